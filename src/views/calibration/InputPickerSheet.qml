import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Calibration

// "Choose Input": the input picker on its own, from the missing-input notice.
Dialog {
    id: root

    required property AppModel appModel

    objectName: "inputPickerSheet"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    closePolicy: Popup.CloseOnEscape
    width: Math.min(420, parent ? parent.width - 24 : 420)
    padding: 20
    // Its own colours: it opens over whatever window holds it.
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.highlight: Theme.accent
    title: "Choose Input"

    contentItem: InputPicker {
        audio: root.appModel.audio
        input: root.appModel.settings.input
    }
    footer: DialogButtonBox {
        Button {
            objectName: "inputPickerDone"
            text: "Done"
            DialogButtonBox.buttonRole: DialogButtonBox.AcceptRole
        }
    }
}
