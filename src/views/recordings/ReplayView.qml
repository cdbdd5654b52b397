import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import QtQuick.Shapes
import Ostrel.Components
import Ostrel.Level
import Ostrel.Spectrum
import Ostrel.Recordings

// One recording replayed: header, current cue, the level views over the player's own meter, the
// overview strip and the transport bar, with the cue list at the side.
Item {
    id: root

    required property AppModel appModel
    property alias folder: replayModel.folder
    readonly property ReplayModel replay: replayModel
    property bool showsCues: true

    function close() { replayModel.close() }

    ReplayModel {
        id: replayModel
        graphDuration: root.appModel.settings.display.graphDuration
    }

    Shortcut {
        enabled: root.visible && replayModel.isOpen
        sequence: "Space"
        onActivated: replayModel.togglePlayback()
    }
    Shortcut {
        enabled: root.visible && replayModel.isOpen
        sequence: "Ctrl+Left"
        onActivated: replayModel.back()
    }
    Shortcut {
        enabled: root.visible && replayModel.isOpen
        sequence: "Ctrl+Right"
        onActivated: replayModel.forward()
    }
    Shortcut {
        enabled: root.visible && replayModel.isOpen
        sequence: "Ctrl+Alt+Left"
        onActivated: replayModel.previousCue()
    }
    Shortcut {
        enabled: root.visible && replayModel.isOpen
        sequence: "Ctrl+Alt+Right"
        onActivated: replayModel.nextCue()
    }

    RowLayout {
        anchors.fill: parent
        anchors.margins: 22
        spacing: 16
        visible: replayModel.isOpen

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 14

            ColumnLayout {
                spacing: 2
                Label {
                    text: replayModel.title
                    font.pixelSize: 22
                    font.weight: Font.DemiBold
                    color: Theme.primary
                }
                Label {
                    text: replayModel.subtitle
                    color: Theme.secondary
                }
                RowLayout {
                    visible: replayModel.problem !== ""
                    spacing: 4
                    SymbolIcon {
                        name: "exclamationmark.triangle.fill"
                        color: Theme.secondary
                    }
                    Label {
                        text: replayModel.problem
                        color: Theme.secondary
                    }
                }
            }

            RowLayout {
                spacing: 10
                Label {
                    visible: replayModel.currentCueNumber !== ""
                    text: replayModel.currentCueNumber
                    font.pixelSize: 28
                    font.weight: Font.DemiBold
                    color: Theme.primary
                }
                Label {
                    text: replayModel.currentCueName
                    font.pixelSize: 22
                    color: Theme.primary
                }
                Label {
                    text: replayModel.moreRunning
                    color: Theme.secondary
                }
            }

            RowLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                spacing: 24
                visible: replayModel.meter !== null

                LevelReadout {
                    Layout.alignment: Qt.AlignVCenter
                    meter: replayModel.meter
                    measurement: root.appModel.settings.measurement
                    display: root.appModel.settings.display
                    numberSize: 96
                }
                // The level graph above the spectrum, each taking half of the height.
                ColumnLayout {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    spacing: 6
                    Caption {
                        text: "LEVEL"
                    }
                    LevelGraph {
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        Layout.preferredHeight: 100
                        meter: replayModel.meter
                    }
                    StatisticsFooter {
                        Layout.fillWidth: true
                        meter: replayModel.meter
                    }
                    Caption {
                        text: "SPECTRUM"
                    }
                    SpectrumView {
                        objectName: "replaySpectrum"
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        Layout.preferredHeight: 100
                        meter: replayModel.meter
                        display: root.appModel.settings.display
                    }
                }
            }

            Item {
                id: strip
                objectName: "overviewStrip"
                Layout.fillWidth: true
                Layout.preferredHeight: 96

                Rectangle {
                    anchors.fill: parent
                    radius: 4
                    color: Theme.surface
                }
                Shape {
                    anchors.fill: parent
                    visible: replayModel.levelTrace.length > 1
                    ShapePath {
                        strokeColor: Theme.accent
                        strokeWidth: 1.5
                        fillColor: "transparent"
                        PathPolyline {
                            path: replayModel.levelTrace.map(p => Qt.point(p.x * strip.width, p.y * strip.height - 2))
                        }
                    }
                }
                Repeater {
                    model: replayModel.cueMarks
                    Rectangle {
                        required property real modelData
                        x: modelData * strip.width
                        y: 0
                        width: 1
                        height: 10
                        color: Theme.primary
                        opacity: 0.7
                    }
                }
                Rectangle {
                    objectName: "playhead"
                    x: replayModel.playhead * strip.width - 1
                    width: 2
                    height: strip.height
                    color: Theme.colors[replayModel.playheadColorRole]
                }
                MouseArea {
                    anchors.fill: parent
                    onPressed: mouse => replayModel.seekFraction(mouse.x / width)
                    onPositionChanged: mouse => {
                        if (pressed)
                            replayModel.seekFraction(mouse.x / width)
                    }
                }
            }

            RowLayout {
                spacing: 14
                TransportButton {
                    symbol: "backward.end.fill"
                    title: "Previous Cue"
                    help: "Previous cue (Ctrl+Alt+Left)"
                    onClicked: replayModel.previousCue()
                }
                TransportButton {
                    symbol: "gobackward.10"
                    title: "Back 10 Seconds"
                    help: "Back 10 seconds (Ctrl+Left)"
                    onClicked: replayModel.back()
                }
                TransportButton {
                    symbol: replayModel.playSymbol
                    title: replayModel.playTitle
                    help: replayModel.playTitle + " (Space)"
                    objectName: "playButton"
                    symbolSize: 28
                    onClicked: replayModel.togglePlayback()
                }
                TransportButton {
                    symbol: "goforward.10"
                    title: "Forward 10 Seconds"
                    help: "Forward 10 seconds (Ctrl+Right)"
                    onClicked: replayModel.forward()
                }
                TransportButton {
                    symbol: "forward.end.fill"
                    title: "Next Cue"
                    help: "Next cue (Ctrl+Alt+Right)"
                    onClicked: replayModel.nextCue()
                }
                Label {
                    text: replayModel.positionText + " / " + replayModel.durationText
                    font.family: "monospace"
                    color: Theme.primary
                }
                Label {
                    text: replayModel.timeOfDay
                    font.pixelSize: 11
                    color: Theme.secondary
                    ToolTip.text: "Time of day during the show"
                }
                Item { Layout.fillWidth: true }
                SymbolIcon {
                    visible: replayModel.hasAudio
                    name: "speaker.fill"
                    color: Theme.secondary
                }
                Slider {
                    objectName: "replayVolume"
                    visible: replayModel.hasAudio
                    implicitWidth: 110
                    from: 0
                    to: 1
                    value: replayModel.volume
                    onMoved: replayModel.volume = value
                    Accessible.name: "Replay volume"
                    ToolTip.text: "Replays through this computer's sound output"
                }
                TransportButton {
                    symbol: "sidebar.right"
                    title: "Cue List"
                    help: "Show or hide the cue list"
                    checkable: true
                    checked: root.showsCues
                    onToggled: root.showsCues = checked
                }
            }
        }

        ListView {
            Layout.preferredWidth: 300
            Layout.minimumWidth: 300
            Layout.fillHeight: true
            visible: root.showsCues
            clip: true
            spacing: 8
            model: replayModel.cues
            delegate: ItemDelegate {
                required property int index
                required property var modelData
                width: ListView.view.width
                ToolTip.text: "Jumps to this cue"
                onClicked: replayModel.jumpToCue(index)
                contentItem: RowLayout {
                    spacing: 6
                    Label {
                        Layout.preferredWidth: 28
                        text: modelData.number
                        font.family: "monospace"
                        font.weight: modelData.isCurrent ? Font.DemiBold : Font.Normal
                        color: Theme.primary
                    }
                    Label {
                        Layout.fillWidth: true
                        text: modelData.name
                        elide: Text.ElideRight
                        font.pixelSize: 12
                        font.weight: modelData.isCurrent ? Font.DemiBold : Font.Normal
                        color: Theme.primary
                    }
                }
            }
            Label {
                anchors.centerIn: parent
                visible: parent.count === 0
                horizontalAlignment: Text.AlignHCenter
                text: "No Cues\n\nNo QLab cues ran during this session."
                color: Theme.secondary
            }
        }
    }
}
