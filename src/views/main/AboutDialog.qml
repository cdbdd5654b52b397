import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Help

// "About Ostrel Live": the mark, the name, the version and one short dedication line.
Dialog {
    id: root

    required property AppModel appModel

    objectName: "aboutDialog"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutside
    contentWidth: 300
    standardButtons: Dialog.Ok
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.highlight: Theme.accent

    ColumnLayout {
        width: parent ? parent.width : 300
        spacing: 6

        OstrelLogo {
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: 96
            Layout.preferredHeight: 96
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: "Ostrel Live"
            font.pixelSize: 20
            font.weight: Font.Bold
        }
        Label {
            objectName: "aboutVersion"
            Layout.alignment: Qt.AlignHCenter
            text: "Version " + (root.appModel ? root.appModel.updater.currentVersion : "")
            color: Theme.secondary
        }
        Label {
            objectName: "aboutCredits"
            Layout.alignment: Qt.AlignHCenter
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "For the sound crews who mix in the dark and are only noticed when something goes wrong."
            wrapMode: Text.WordWrap
            font.pixelSize: 11
            color: Theme.secondary
        }
    }
}
