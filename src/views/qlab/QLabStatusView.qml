import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.QLab

// A dot in the link's colour and "QLab" with its state; the workspace on hover.
Row {
    id: root

    required property QLabClient qlab
    property real fontSize: 12
    readonly property QLabStatusModel status: statusModel

    spacing: statusModel.spacing

    QLabStatusModel {
        id: statusModel
        qlab: root.qlab
    }

    Rectangle {
        objectName: "statusDot"
        anchors.verticalCenter: parent.verticalCenter
        width: root.fontSize * 0.6
        height: width
        radius: width / 2
        color: Theme.colors[statusModel.dotColorRole]
        opacity: statusModel.dotOpacity
        Accessible.ignored: true
    }
    Text {
        objectName: "statusText"
        text: statusModel.text
        font.pixelSize: root.fontSize
        color: Theme.secondary
        Accessible.role: Accessible.StaticText
        Accessible.name: statusModel.text
        Accessible.description: statusModel.helpText
    }

    HoverHandler {
        id: hover
    }
    ToolTip.text: statusModel.helpText
    ToolTip.visible: statusModel.hasHelp && hover.hovered
    ToolTip.delay: 500
}
