import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Mics

// The settings window, opened with Ctrl+,. Its one page so far is Mics; the others join it.
Window {
    id: root

    required property AppModel appModel
    readonly property MicSettings micPage: micSettings

    objectName: "settingsWindow"
    title: "Settings"
    width: 500
    height: 560
    minimumWidth: 420
    minimumHeight: 360
    color: Theme.background
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

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 20
        spacing: 12

        TabBar {
            id: tabs
            Layout.fillWidth: true
            TabButton {
                text: "Mics"
                contentItem: Row {
                    spacing: 6
                    SymbolIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "mic.badge.xmark"
                        color: Theme.primary
                    }
                    Label {
                        anchors.verticalCenter: parent.verticalCenter
                        text: "Mics"
                        color: Theme.primary
                    }
                }
            }
        }
        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: tabs.currentIndex
            MicSettings {
                id: micSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
            }
        }
    }
}
