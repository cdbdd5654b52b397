import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Sessions

// "Cue History": the cues that have finished, newest first.
Window {
    id: root

    required property SessionStore sessions
    readonly property CueHistoryModel history: historyModel

    title: "Cue History"
    width: 720
    height: 420
    minimumWidth: 560
    minimumHeight: 280
    color: Theme.background
    // A window of its own: it takes the station's colours, which the desktop's palette misses.
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.toolTipBase: Theme.surface
    palette.toolTipText: Theme.primary
    palette.highlight: Theme.accent
    palette.highlightedText: Theme.background

    CueHistoryModel {
        id: historyModel
        sessions: root.sessions
    }

    ColumnLayout {
        anchors.centerIn: parent
        visible: historyModel.isEmpty
        spacing: 8
        SymbolIcon {
            Layout.alignment: Qt.AlignHCenter
            name: historyModel.emptySymbol
            size: 36
            color: Theme.tertiary
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: historyModel.emptyTitle
            font.pixelSize: 18
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: historyModel.emptyText
            color: Theme.tertiary
        }
    }

    ListView {
        id: table
        objectName: "cueHistoryTable"
        anchors.fill: parent
        anchors.margins: 12
        visible: !historyModel.isEmpty
        clip: true
        model: historyModel
        headerPositioning: ListView.OverlayHeader
        header: Row {
            z: 2
            spacing: 0
            Repeater {
                model: historyModel.headers
                Label {
                    required property int index
                    required property string modelData
                    width: historyModel.columnWidths[index] * table.width / 580
                    text: modelData
                    font.weight: Font.DemiBold
                    color: Theme.secondary
                    padding: 4
                }
            }
        }
        delegate: Row {
            id: row
            required property string number
            required property string name
            required property string started
            required property string duration
            required property string peak
            required property string leq
            readonly property var cells: [number, name, started, duration, peak, leq]
            Repeater {
                model: 6
                Label {
                    required property int index
                    width: historyModel.columnWidths[index] * table.width / 580
                    text: row.cells[index]
                    elide: Text.ElideRight
                    color: Theme.primary
                    padding: 4
                }
            }
        }
    }
}
