import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Sessions

// "Session Summary" of the show that has just ended.
Dialog {
    id: root

    required property AppModel appModel
    required property SessionCommands commands
    readonly property SessionSummaryModel summary: summaryModel

    signal exportRequested(bool levels)
    signal replayRequested

    objectName: "sessionSummary"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    visible: summaryModel.isPresented
    closePolicy: Popup.CloseOnEscape
    width: summaryModel.width
    padding: 20

    SessionSummaryModel {
        id: summaryModel
        appModel: root.appModel
    }

    contentItem: ColumnLayout {
        spacing: 20

        ColumnLayout {
            spacing: 2
            Label {
                text: summaryModel.title
                font.pixelSize: 22
                font.weight: Font.DemiBold
                color: Theme.primary
            }
            Label {
                text: summaryModel.name
                color: Theme.primary
            }
            Label {
                text: summaryModel.measuredWith
                font.pixelSize: 11
                color: Theme.secondary
            }
        }
        RowLayout {
            visible: summaryModel.hasWarning
            spacing: 6
            SymbolIcon {
                name: "exclamationmark.triangle.fill"
                color: Theme.colors[summaryModel.warningColorRole]
            }
            Label {
                Layout.fillWidth: true
                text: summaryModel.warning
                wrapMode: Text.WordWrap
                color: Theme.primary
            }
        }
        GridLayout {
            columns: 2
            columnSpacing: 20
            rowSpacing: 16
            SummaryValue { label: "Duration"; value: summaryModel.durationText }
            SummaryValue { label: "Cues"; value: summaryModel.cuesText }
            SummaryValue { label: "Maximum SPL"; value: summaryModel.maximumText }
            SummaryValue { label: "Average Leq"; value: summaryModel.averageText }
        }
    }

    footer: DialogButtonBox {
        Button {
            id: exportButton
            text: "Export"
            onClicked: exportMenu.open()
            Menu {
                id: exportMenu
                y: exportButton.height
                MenuItem {
                    text: "Cue History\u2026"
                    onTriggered: root.exportRequested(false)
                }
                MenuItem {
                    text: "Level History\u2026"
                    onTriggered: root.exportRequested(true)
                }
            }
        }
        Button {
            visible: summaryModel.showsReplay
            text: "Replay"
            onClicked: {
                summaryModel.selectForReplay()
                root.replayRequested()
                root.close()
            }
        }
        Button {
            text: "Done"
            highlighted: true
            DialogButtonBox.buttonRole: DialogButtonBox.AcceptRole
        }
    }

    onClosed: summaryModel.done()
}
