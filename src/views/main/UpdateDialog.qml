import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components

// The outcome of an update check: a newer release with its download page, up to date, or why the
// check failed. Nothing is installed from here; the download page opens in the browser.
Dialog {
    id: root

    required property AppUpdater updater

    objectName: "updateDialog"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    closePolicy: Popup.CloseOnEscape
    contentWidth: 360
    title: updater ? updater.title : ""
    visible: updater !== null && updater.isPresenting
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.highlight: Theme.accent

    Label {
        width: parent ? parent.width : 360
        text: root.updater ? root.updater.detail : ""
        wrapMode: Text.WordWrap
    }

    footer: DialogButtonBox {
        Button {
            objectName: "releaseNotesButton"
            text: "Release Notes"
            visible: root.updater !== null && root.updater.releaseNotes !== ""
            DialogButtonBox.buttonRole: DialogButtonBox.HelpRole
            onClicked: Qt.openUrlExternally(root.updater.releaseNotes)
        }
        Button {
            objectName: "laterButton"
            text: root.updater !== null && root.updater.hasUpdate ? "Later" : "OK"
            DialogButtonBox.buttonRole: DialogButtonBox.RejectRole
        }
        Button {
            objectName: "downloadButton"
            text: "Open Download Page"
            visible: root.updater !== null && root.updater.hasUpdate
            highlighted: true
            DialogButtonBox.buttonRole: DialogButtonBox.AcceptRole
        }
    }

    onAccepted: {
        if (updater && updater.hasUpdate) Qt.openUrlExternally(updater.downloadPage)
    }
    onClosed: if (updater) updater.dismiss()
}
