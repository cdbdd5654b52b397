import QtQuick
import Ostrel.Components
import Ostrel.Dante

// The red pulse over the whole main screen. It takes no clicks and is hidden from screen
// readers: the status line and the log say what happened.
Rectangle {
    id: root

    required property DanteMonitor dante
    required property DanteSettings settings
    // The crew's count of urgent messages: a rise flashes.
    property int urgentFlashCount: 0
    readonly property DropoutFlashModel flash: flashModel

    color: "red"
    opacity: flashModel.opacity
    visible: flashModel.opacity > 0
    Accessible.ignored: true

    DropoutFlashModel {
        id: flashModel
        dante: root.dante
        settings: root.settings
        urgentFlashCount: root.urgentFlashCount
    }
}
