import QtQuick
import Ostrel.Components
import Ostrel.Spectrum

// "Possible feedback" and the frequency, in orange, while the meter hears a tone ringing.
Item {
    id: root

    required property MeterModel meter
    required property DisplaySettings display
    property real scale: 1
    property bool reduceMotion: false
    readonly property FeedbackWarningModel warning: warningModel

    implicitWidth: label.implicitWidth + 20 * scale
    implicitHeight: warningModel.isShown ? label.implicitHeight + 10 * scale : 0
    visible: opacity > 0
    opacity: warningModel.isShown ? warningModel.shownOpacity : 0
    Behavior on opacity {
        NumberAnimation { duration: root.reduceMotion ? 0 : 250; easing.type: Easing.InOutQuad }
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: warningModel.accessibleText

    FeedbackWarningModel {
        id: warningModel
        meter: root.meter
        display: root.display
    }

    Rectangle {
        anchors.fill: parent
        radius: 6 * root.scale
        color: Theme.colors[warningModel.colorRole]
        opacity: warningModel.backgroundOpacity
    }
    Row {
        id: label
        anchors.centerIn: parent
        spacing: 6 * root.scale
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: warningModel.symbol
            size: 16 * root.scale
            color: Theme.colors[warningModel.colorRole]
        }
        Text {
            objectName: "feedbackText"
            anchors.verticalCenter: parent.verticalCenter
            text: warningModel.text
            font.pixelSize: 16 * root.scale
            font.weight: Font.DemiBold
            color: Theme.colors[warningModel.colorRole]
        }
    }
}
