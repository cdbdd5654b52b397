import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.QLab

// The cue in progress with its timing and the others playing, "No cue playing", or while QLab
// is not connected why not. The show-mode form is centred and grows with `scale`.
Item {
    id: root

    required property QLabClient qlab
    property bool showMode: false
    property real scale: 1
    property bool reduceMotion: false
    readonly property CurrentCueModel cue: cueModel

    implicitHeight: content.implicitHeight

    CurrentCueModel {
        id: cueModel
        qlab: root.qlab
    }

    ColumnLayout {
        id: content
        width: parent.width
        spacing: 0

        QLabUnavailableView {
            objectName: "qlabUnavailable"
            Layout.fillWidth: true
            visible: cueModel.showsUnavailable
            cue: cueModel
            showMode: root.showMode
            scale: root.scale
        }
        Text {
            objectName: "noCuePlaying"
            Layout.fillWidth: true
            visible: !cueModel.showsUnavailable && !cueModel.hasCue
            horizontalAlignment: root.showMode ? Text.AlignHCenter : Text.AlignLeft
            text: cueModel.noCueText
            font.pixelSize: root.showMode ? 34 * root.scale : 22
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        CueDetails {
            id: details
            objectName: "cueDetails"
            Layout.fillWidth: true
            visible: !cueModel.showsUnavailable && cueModel.hasCue
            cue: cueModel
            showMode: root.showMode
            scale: root.scale
        }
    }

    // A new cue slides in; with reduced motion it only fades.
    Connections {
        target: cueModel
        function onCueIdChanged() {
            if (cueModel.hasCue) arrival.restart()
        }
    }
    ParallelAnimation {
        id: arrival
        NumberAnimation {
            target: details
            property: "opacity"
            from: 0
            to: 1
            duration: root.reduceMotion ? 200 : 400
            easing.type: Easing.InOutQuad
        }
        NumberAnimation {
            target: details
            property: "Layout.topMargin"
            from: root.reduceMotion ? 0 : 12 * root.scale
            to: 0
            duration: root.reduceMotion ? 0 : 400
            easing.type: Easing.OutCubic
        }
    }
}
