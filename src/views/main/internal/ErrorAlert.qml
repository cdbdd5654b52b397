import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Main

// "Something Went Wrong", shown while the model holds an error message; OK clears it.
Dialog {
    id: root

    required property ContentModel content

    objectName: "errorAlert"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    // Only OK (or Escape) dismisses: a stray click in the dark must not lose an unread error.
    closePolicy: Popup.CloseOnEscape
    contentWidth: 320
    title: content.errorTitle
    visible: content.showsError
    standardButtons: Dialog.Ok
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.highlight: Theme.accent

    Label {
        text: root.content.errorText
        wrapMode: Text.WordWrap
    }

    onClosed: content.dismissError()
}
