import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Sessions

// The main window's menus for the show: start, end and export a session, and the cue history.
MenuBar {
    id: root

    required property SessionCommands commands
    signal exportRequested
    signal cueHistoryRequested
    signal recordingsRequested
    signal danteDevicesRequested

    Menu {
        title: "File"
        Action {
            text: "Recordings"
            shortcut: root.commands.recordingsShortcut
            onTriggered: root.recordingsRequested()
        }
        Action {
            text: "New Session"
            shortcut: root.commands.newSessionShortcut
            enabled: root.commands.canStartSession
            onTriggered: root.commands.newSession()
        }
        Action {
            text: "End Session"
            shortcut: root.commands.endSessionShortcut
            enabled: root.commands.canEndSession
            onTriggered: root.commands.endSession()
        }
        MenuSeparator {}
        Action {
            text: "Export Session\u2026"
            shortcut: root.commands.exportShortcut
            enabled: root.commands.canExport
            onTriggered: root.exportRequested()
        }
    }
    Shortcut {
        sequence: root.commands.recordingsWindowShortcut
        onActivated: root.recordingsRequested()
    }
    Menu {
        title: "Window"
        Action {
            text: "Cue History"
            shortcut: root.commands.cueHistoryShortcut
            onTriggered: root.cueHistoryRequested()
        }
        Action {
            text: "Dante Devices"
            onTriggered: root.danteDevicesRequested()
        }
    }
}
