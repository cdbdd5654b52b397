import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.QLab

// Why no cue can be shown, and the button that can help.
ColumnLayout {
    id: root

    required property CurrentCueModel cue
    property bool showMode: false
    property real scale: 1

    spacing: 8 * (showMode ? scale : 1)

    Text {
        objectName: "qlabUnavailableText"
        Layout.fillWidth: true
        horizontalAlignment: root.showMode ? Text.AlignHCenter : Text.AlignLeft
        text: root.cue.unavailableText
        wrapMode: Text.WordWrap
        font.pixelSize: root.showMode ? 22 * root.scale : 20
        font.weight: Font.DemiBold
        color: Theme.secondary
    }
    Button {
        objectName: "qlabUnavailableAction"
        Layout.alignment: root.showMode ? Qt.AlignHCenter : Qt.AlignLeft
        visible: root.cue.hasUnavailableAction
        text: root.cue.unavailableAction
        font.pixelSize: 13 * (root.showMode ? Math.min(root.scale, 1.6) : 1)
        onClicked: root.cue.performUnavailableAction()
    }
}
