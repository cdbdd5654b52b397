import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Recordings

// "Recordings": the recorded shows on the left, the selected one's replay on the right.
Window {
    id: root

    required property AppModel appModel
    readonly property RecordingsModel recordings: recordingsModel

    title: "Recordings"
    width: 1180
    height: 760
    minimumWidth: 980
    minimumHeight: 640
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

    RecordingsModel {
        id: recordingsModel
        appModel: root.appModel
    }

    onVisibleChanged: {
        if (visible)
            recordingsModel.refresh()
        else
            replay.close()
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        ListView {
            id: list
            objectName: "recordingsList"
            Layout.preferredWidth: 220
            Layout.fillHeight: true
            clip: true
            model: recordingsModel
            currentIndex: recordingsModel.selectedRow
            delegate: ItemDelegate {
                id: row
                required property int index
                required property string name
                required property string date
                required property string caption
                required property bool isRecording
                width: ListView.view.width
                highlighted: ListView.isCurrentItem
                onClicked: recordingsModel.select(index)
                contentItem: ColumnLayout {
                    spacing: 2
                    Label {
                        Layout.fillWidth: true
                        text: row.name
                        font.weight: Font.DemiBold
                        elide: Text.ElideRight
                        color: Theme.primary
                    }
                    Label {
                        text: row.date
                        font.pixelSize: 12
                        color: Theme.secondary
                    }
                    RowLayout {
                        spacing: 6
                        SymbolIcon {
                            visible: row.isRecording
                            name: "record.circle"
                            size: 12
                            color: Theme.colors[recordingsModel.recordingColorRole]
                        }
                        Label {
                            text: row.caption
                            font.pixelSize: 11
                            color: Theme.secondary
                        }
                    }
                }
                TapHandler {
                    acceptedButtons: Qt.RightButton
                    onTapped: {
                        rowMenu.row = row.index
                        rowMenu.popup()
                    }
                }
            }
            Label {
                anchors.centerIn: parent
                visible: recordingsModel.showsEmptyList
                width: parent.width - 24
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                text: "No Recordings\n\nStart a session to record a show's audio, levels and spectrum."
                color: Theme.secondary
            }
        }

        Rectangle {
            Layout.fillHeight: true
            width: 1
            color: Theme.quaternary
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            Label {
                anchors.centerIn: parent
                visible: recordingsModel.showsNoSelection
                horizontalAlignment: Text.AlignHCenter
                text: "Select a Recording\n\nChoose a show to replay it."
                color: Theme.secondary
            }
            Label {
                anchors.centerIn: parent
                visible: recordingsModel.showsInProgress
                horizontalAlignment: Text.AlignHCenter
                text: "Recording in Progress\n\nYou can replay this session once it ends."
                color: Theme.secondary
            }
            ReplayView {
                id: replay
                anchors.fill: parent
                visible: recordingsModel.showsReplay
                appModel: root.appModel
                folder: recordingsModel.selectedFolder
            }
        }
    }

    Menu {
        id: rowMenu
        property int row: -1
        MenuItem {
            text: "Show in File Manager"
            onTriggered: recordingsModel.showInFileManager(rowMenu.row)
        }
        MenuItem {
            text: "Move to Bin"
            onTriggered: {
                confirmDeletion.row = rowMenu.row
                confirmDeletion.open()
            }
        }
    }

    Dialog {
        id: confirmDeletion
        property int row: -1
        anchors.centerIn: parent
        modal: true
        title: "Move to Bin"
        standardButtons: Dialog.Cancel
        Label {
            width: 320
            wrapMode: Text.WordWrap
            text: recordingsModel.deletionMessage(confirmDeletion.row)
        }
        footer: DialogButtonBox {
            Button {
                text: "Move to Bin"
                DialogButtonBox.buttonRole: DialogButtonBox.AcceptRole
            }
            Button {
                text: "Cancel"
                DialogButtonBox.buttonRole: DialogButtonBox.RejectRole
            }
        }
        onAccepted: recordingsModel.moveToBin(row)
    }

    Dialog {
        anchors.centerIn: parent
        modal: true
        visible: recordingsModel.problem !== ""
        title: "Something Went Wrong"
        standardButtons: Dialog.Ok
        Label {
            text: recordingsModel.problem
        }
    }
}
