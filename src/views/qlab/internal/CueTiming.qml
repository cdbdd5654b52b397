import QtQuick
import Ostrel.Components
import Ostrel.QLab

// "Playing" or "Paused", the elapsed time and, when QLab knows the duration, the time left.
Item {
    id: root

    required property CurrentCueModel cue
    property bool centred: false
    property real fontSize: 15

    implicitHeight: row.implicitHeight
    // A narrow column cuts the times off rather than run under what stands beside it.
    clip: true

    Row {
        id: row
        x: root.centred ? (root.width - width) / 2 : 0
        spacing: root.fontSize * 0.8
        Text {
            objectName: "cuePlaying"
            text: root.cue.playingText
            font.pixelSize: root.fontSize
            color: Theme.secondary
        }
        Text {
            objectName: "cueElapsed"
            text: root.cue.elapsedText
            font.pixelSize: root.fontSize
            color: Theme.primary
        }
        Text {
            objectName: "cueRemaining"
            visible: root.cue.hasRemaining
            text: "\u2212" + root.cue.remainingText
            font.pixelSize: root.fontSize
            color: Theme.secondary
        }
    }
}
