import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import Ostrel.Components
import Ostrel.Main
import Ostrel.Sessions
import Ostrel.Recordings
import Ostrel.Mics
import Ostrel.Help
import Ostrel.Dante

// The station's main window. The shell shows it, maximised unless the model is inert.
ApplicationWindow {
    id: window

    required property AppModel appModel

    title: mainScreen.content.title
    width: mainScreen.content.defaultWidth
    height: mainScreen.content.defaultHeight
    minimumWidth: mainScreen.content.minimumWidth
    minimumHeight: mainScreen.content.minimumHeight
    color: Theme.background
    // For what opens over the window (tool tips, the alert), which the screen's palette misses.
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.toolTipBase: Theme.surface
    palette.toolTipText: Theme.primary
    palette.highlight: Theme.accent

    menuBar: StationMenuBar {
        sessions: sessionCommands
        station: stationCommands
        onExportRequested: window.exportSession(false, false)
        onCueHistoryRequested: {
            cueHistory.show()
            cueHistory.raise()
        }
        onRecordingsRequested: window.showRecordings()
        onSettingsRequested: window.showSettings()
        onDanteDevicesRequested: window.showDanteDevices()
        onHelpRequested: {
            helpWindow.show()
            helpWindow.raise()
        }
        onAboutRequested: aboutDialog.open()
    }

    function showSettings() {
        settingsWindow.show()
        settingsWindow.raise()
    }

    function showRecordings() {
        recordingsWindow.show()
        recordingsWindow.raise()
    }

    function showDanteDevices() {
        danteDevicesWindow.show()
        danteDevicesWindow.raise()
    }

    function exportSession(levels, fromSummary) {
        if (sessionCommands.prepareExport(levels, fromSummary)) {
            exportDialog.currentFile = sessionCommands.proposedFile
            exportDialog.open()
        }
    }

    SessionCommands {
        id: sessionCommands
        appModel: window.appModel
    }
    StationCommands {
        id: stationCommands
        appModel: window.appModel
    }

    MainScreen {
        id: mainScreen
        objectName: "mainScreen"
        anchors.fill: parent
        appModel: window.appModel
        onDanteDevicesRequested: window.showDanteDevices()
    }

    NewSessionSheet {
        appModel: window.appModel
    }
    SessionSummarySheet {
        appModel: window.appModel
        commands: sessionCommands
        onExportRequested: levels => window.exportSession(levels, true)
        onReplayRequested: window.showRecordings()
    }
    FileDialog {
        id: exportDialog
        objectName: "exportDialog"
        fileMode: FileDialog.SaveFile
        nameFilters: ["Comma-separated values (*.csv)"]
        defaultSuffix: "csv"
        onAccepted: sessionCommands.exportTo(selectedFile)
    }
    RecordingsWindow {
        id: recordingsWindow
        objectName: "recordingsWindow"
        appModel: window.appModel
    }
    SettingsWindow {
        id: settingsWindow
        appModel: window.appModel
        onExportRequested: window.exportSession(false, false)
    }
    CueHistoryWindow {
        id: cueHistory
        objectName: "cueHistoryWindow"
        sessions: window.appModel.sessions
    }
    // The manual needs no model.
    HelpWindow {
        id: helpWindow
        objectName: "helpWindow"
    }
    AboutDialog {
        id: aboutDialog
        objectName: "aboutDialog"
        appModel: window.appModel
    }
    UpdateDialog {
        updater: window.appModel.updater
    }
    DanteDevicesWindow {
        id: danteDevicesWindow
        objectName: "danteDevicesWindow"
        dante: window.appModel.dante
        settings: window.appModel.settings.dante
    }
}
