import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// The Data page: what sessions record, where they are kept, the update check and the export.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property DataPageModel page: pageModel

    signal exportRequested

    contentWidth: availableWidth

    DataPageModel {
        id: pageModel
        sessions: root.appModel.settings.sessions
        updater: root.appModel.updater
        sessionsFolder: root.appModel.sessionsFolder
    }

    ColumnLayout {
        width: root.availableWidth
        spacing: 8

        Switch {
            objectName: "recordsSessionsSwitch"
            Layout.fillWidth: true
            text: "Record audio and spectrum during sessions"
            checked: pageModel.recordsSessions
            onToggled: pageModel.recordsSessions = checked
        }
        SettingsFooter {
            objectName: "recordingFooter"
            text: pageModel.recordingFooter
        }
        Switch {
            objectName: "recordsLevelHistorySwitch"
            Layout.fillWidth: true
            text: "Record level history during sessions"
            checked: pageModel.recordsLevelHistory
            onToggled: pageModel.recordsLevelHistory = checked
        }
        SettingsFooter {
            text: "Stores one Leq and Max value per second, for CSV export."
        }
        SettingsRow {
            title: "Saved Sessions"
            Button {
                objectName: "showSessionsButton"
                text: "Show in Finder"
                onClicked: {
                    const folder = pageModel.prepareSessionsFolder()
                    if (folder.toString() !== "")
                        Qt.openUrlExternally(folder)
                }
            }
        }
        Switch {
            objectName: "checksAutomaticallySwitch"
            Layout.fillWidth: true
            visible: pageModel.showsUpdateToggle
            text: "Check for updates automatically"
            checked: pageModel.checksAutomatically
            onToggled: pageModel.checksAutomatically = checked
        }
        SettingsRow {
            title: "CSV Export"
            Button {
                objectName: "exportSessionButton"
                text: "Export Session…"
                enabled: root.appModel.canExport
                onClicked: root.exportRequested()
            }
        }
        SettingsFooter {
            objectName: "storageFooter"
            text: pageModel.storageFooter
        }
    }
}
