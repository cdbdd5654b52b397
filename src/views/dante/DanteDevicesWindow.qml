import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Dante
import "internal"

// "Dante Devices": every device seen, offline first, the button that forgets the offline ones,
// and the dropout log.
Window {
    id: root

    required property DanteMonitor dante
    required property DanteSettings settings
    readonly property DanteDevicesModel devices: devicesModel

    title: devicesModel.title
    width: 760
    height: 460
    minimumWidth: 600
    minimumHeight: 320
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

    DanteDevicesModel {
        id: devicesModel
        dante: root.dante
        settings: root.settings
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 12
        spacing: 10

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 3

            ColumnLayout {
                objectName: "danteEmptyState"
                anchors.centerIn: parent
                visible: devicesModel.isEmpty
                spacing: 8
                SymbolIcon {
                    Layout.alignment: Qt.AlignHCenter
                    name: devicesModel.emptySymbol
                    size: 36
                    color: Theme.tertiary
                }
                Label {
                    Layout.alignment: Qt.AlignHCenter
                    text: devicesModel.emptyTitle
                    font.pixelSize: 18
                    font.weight: Font.DemiBold
                    color: Theme.secondary
                }
                Label {
                    Layout.alignment: Qt.AlignHCenter
                    text: devicesModel.emptyText
                    color: Theme.tertiary
                }
            }

            ListView {
                id: table
                objectName: "danteDeviceTable"
                anchors.fill: parent
                visible: !devicesModel.isEmpty
                clip: true
                model: devicesModel
                headerPositioning: ListView.OverlayHeader
                readonly property real unit: width / 710
                header: Row {
                    z: 2
                    Repeater {
                        model: devicesModel.headers
                        Label {
                            required property int index
                            required property string modelData
                            width: devicesModel.columnWidths[index] * table.unit
                            text: modelData
                            font.weight: Font.DemiBold
                            color: Theme.secondary
                            padding: 4
                        }
                    }
                }
                delegate: Row {
                    id: row
                    required property string status
                    required property bool isOnline
                    required property string name
                    required property string model
                    required property string manufacturer
                    required property string address
                    required property string firmware
                    required property int dotColorRole
                    required property int statusColorRole
                    readonly property var cells: [name, model, manufacturer, address, firmware]
                    Row {
                        width: devicesModel.columnWidths[0] * table.unit
                        spacing: 6
                        leftPadding: 4
                        Rectangle {
                            anchors.verticalCenter: parent.verticalCenter
                            width: 8
                            height: 8
                            radius: 4
                            color: Theme.colors[row.dotColorRole]
                        }
                        Label {
                            text: row.status
                            color: Theme.colors[row.statusColorRole]
                            padding: 4
                            leftPadding: 0
                        }
                    }
                    Repeater {
                        model: 5
                        Label {
                            required property int index
                            width: devicesModel.columnWidths[index + 1] * table.unit
                            text: row.cells[index]
                            elide: Text.ElideRight
                            color: Theme.primary
                            padding: 4
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Button {
                objectName: "removeOfflineDevices"
                text: devicesModel.removeTitle
                enabled: devicesModel.canRemoveOffline
                onClicked: devicesModel.removeOfflineDevices()
                ToolTip.text: devicesModel.removeHelp
                ToolTip.visible: hovered
                ToolTip.delay: 500
                contentItem: Row {
                    spacing: 6
                    SymbolIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        name: devicesModel.removeSymbol
                        size: 16
                        color: Theme.primary
                        opacity: devicesModel.canRemoveOffline ? 1 : 0.4
                    }
                    Label {
                        text: devicesModel.removeTitle
                        color: Theme.primary
                        opacity: devicesModel.canRemoveOffline ? 1 : 0.4
                    }
                }
            }
            Item { Layout.fillWidth: true }
        }

        DropoutLog {
            objectName: "dropoutLog"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 2
            dante: root.dante
        }
    }
}
