import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.QLab

// The cue views alone, as the screen tests draw them: the current cue in its regular or
// show-mode form beside the timecode readout.
Rectangle {
    id: root

    required property AppModel appModel
    property bool showMode: false
    readonly property real scale: Math.max(0.8, Math.min(3.0, Math.min(width / 560, height / 720)))

    color: Theme.background
    // Show mode is drawn dark, as in a dark room; the regular form light.
    Component.onCompleted: Theme.dark = showMode

    RowLayout {
        anchors.fill: parent
        anchors.margins: 24 * root.scale
        spacing: 48 * root.scale

        CurrentCueView {
            objectName: "currentCue"
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            qlab: root.appModel.qlab
            showMode: root.showMode
            scale: root.scale
        }
        TimecodeReadout {
            objectName: "timecodeReadout"
            Layout.alignment: Qt.AlignTop
            visible: isShown
            qlab: root.appModel.qlab
            settings: root.appModel.settings.qlab
            scale: root.scale
        }
    }
}
