import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Mics

// The Mics page of the settings: the two switches, the receivers and "Add Receiver".
Item {
    id: root

    required property AppModel appModel
    readonly property MicSettingsModel page: pageModel
    readonly property AddReceiverSheet addSheet: sheet

    MicSettingsModel {
        id: pageModel
        mics: root.appModel.mics
        settings: root.appModel.settings.mics
    }

    ColumnLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        spacing: 10

        Label {
            text: pageModel.sectionTitle
            font.pixelSize: 13
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        Switch {
            objectName: "micMonitoringSwitch"
            Layout.fillWidth: true
            text: pageModel.monitoringTitle
            checked: pageModel.monitoringEnabled
            onToggled: pageModel.monitoringEnabled = checked
        }
        Switch {
            objectName: "micLowBatterySwitch"
            Layout.fillWidth: true
            text: pageModel.lowBatteryTitle
            enabled: pageModel.lowBatteryToggleEnabled
            checked: pageModel.lowBatteryWarnings
            onToggled: pageModel.lowBatteryWarnings = checked
        }
        Label {
            objectName: "noReceivers"
            visible: !pageModel.hasReceivers
            text: pageModel.emptyText
            color: Theme.secondary
        }
        Repeater {
            model: pageModel.receiverRows

            RowLayout {
                id: receiverRow
                required property var modelData
                objectName: "receiverRow"
                Layout.fillWidth: true
                spacing: 8

                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 2
                    // A column only grows when something in it may.
                    Label {
                        Layout.fillWidth: true
                        text: receiverRow.modelData.title
                        color: Theme.primary
                    }
                    Label {
                        text: receiverRow.modelData.subtitle
                        font.pixelSize: 11
                        color: Theme.secondary
                    }
                    Label {
                        objectName: "receiverProblem"
                        Layout.fillWidth: true
                        visible: receiverRow.modelData.hasProblem
                        text: receiverRow.modelData.problem
                        wrapMode: Text.WordWrap
                        font.pixelSize: 11
                        color: Theme.colors[pageModel.problemColorRole]
                    }
                }
                Button {
                    text: "Remove"
                    onClicked: pageModel.removeReceiver(receiverRow.modelData.id)
                }
            }
        }
        Button {
            objectName: "addReceiverButton"
            text: "Add Receiver"
            onClicked: sheet.open()
        }
        Label {
            Layout.fillWidth: true
            text: pageModel.footer
            wrapMode: Text.WordWrap
            font.pixelSize: 11
            color: Theme.secondary
        }
    }

    AddReceiverSheet {
        id: sheet
        mics: root.appModel.mics
    }
}
