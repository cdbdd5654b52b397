import QtQuick
import Ostrel.Components
import Ostrel.Dante

// One line in the top left corner: what is offline in orange, or a green dot and the count.
Row {
    id: root

    required property DanteMonitor dante
    property bool showsDante: false
    property bool isVisible: false
    readonly property DanteStatusModel status: statusModel

    spacing: statusModel.spacing
    opacity: statusModel.shows ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation {
            duration: statusModel.animationMilliseconds
            easing.type: Easing.InOutQuad
        }
    }
    Accessible.role: Accessible.StaticText
    Accessible.name: statusModel.accessibleName

    DanteStatusModel {
        id: statusModel
        dante: root.dante
        showsDante: root.showsDante
        isVisible: root.isVisible
    }

    SymbolIcon {
        anchors.verticalCenter: parent.verticalCenter
        visible: statusModel.isWarning
        name: statusModel.symbol
        size: statusModel.fontSize
        color: Theme.colors[statusModel.warningColorRole]
    }
    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        visible: statusModel.showsDot
        width: statusModel.dotSize
        height: width
        radius: width / 2
        color: Theme.colors[statusModel.dotColorRole]
    }
    Text {
        objectName: "danteStatusText"
        text: statusModel.text
        font.pixelSize: statusModel.fontSize
        color: Theme.colors[statusModel.textColorRole]
    }
}
