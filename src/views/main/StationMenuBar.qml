import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Main
import Ostrel.Sessions

// The main window's menus, with the station's shortcuts and their enabled rules.
MenuBar {
    id: root

    required property SessionCommands sessions
    required property StationCommands station
    signal exportRequested
    signal cueHistoryRequested
    signal recordingsRequested
    signal settingsRequested
    signal danteDevicesRequested
    signal helpRequested
    signal aboutRequested

    Menu {
        title: "File"
        Action {
            text: "Recordings"
            shortcut: root.sessions.recordingsShortcut
            onTriggered: root.recordingsRequested()
        }
        Action {
            text: "New Session"
            shortcut: root.sessions.newSessionShortcut
            enabled: root.sessions.canStartSession
            onTriggered: root.sessions.newSession()
        }
        Action {
            text: "End Session"
            shortcut: root.sessions.endSessionShortcut
            enabled: root.sessions.canEndSession
            onTriggered: root.sessions.endSession()
        }
        MenuSeparator {}
        Action {
            text: "Export Session\u2026"
            shortcut: root.sessions.exportShortcut
            enabled: root.sessions.canExport
            onTriggered: root.exportRequested()
        }
    }
    Menu {
        title: "Edit"
        Action {
            text: "Settings\u2026"
            shortcut: root.station.settingsShortcut
            onTriggered: root.settingsRequested()
        }
    }
    Menu {
        title: "View"
        Action {
            text: "Reset Peak and Leq"
            shortcut: root.station.resetShortcut
            onTriggered: root.station.resetPeakAndLeq()
        }
        MenuSeparator {}
        Action {
            text: "Brighter"
            shortcut: root.station.brighterShortcut
            enabled: root.station.canBrighten
            onTriggered: root.station.brighter()
        }
        Action {
            text: "Dimmer"
            shortcut: root.station.dimmerShortcut
            enabled: root.station.canDim
            onTriggered: root.station.dimmer()
        }
    }
    Menu {
        title: "Window"
        Action {
            text: "Cue History"
            shortcut: root.sessions.cueHistoryShortcut
            onTriggered: root.cueHistoryRequested()
        }
        Action {
            text: "Recordings"
            shortcut: root.sessions.recordingsWindowShortcut
            onTriggered: root.recordingsRequested()
        }
        Action {
            text: "Dante Devices"
            onTriggered: root.danteDevicesRequested()
        }
    }
    Menu {
        title: "Help"
        Action {
            text: "Ostrel Live Help"
            shortcut: root.station.helpShortcut
            onTriggered: root.helpRequested()
        }
        MenuSeparator {}
        Action {
            // Visible in every mode; disabled where the station has no updater.
            text: "Check for Updates\u2026"
            enabled: root.station.canCheckForUpdates
            onTriggered: root.station.checkForUpdates()
        }
        Action {
            text: "About Ostrel Live"
            onTriggered: root.aboutRequested()
        }
    }
    Shortcut {
        sequence: root.station.helpKey
        onActivated: root.helpRequested()
    }
}
