import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew
import Ostrel.Main
import Ostrel.Mics

// The settings window, opened with Ctrl+,: one tab per page. Every control writes its setting at
// once; there is nothing to apply or save.
Window {
    id: root

    required property AppModel appModel
    readonly property AudioSettingsPage audioPage: audioSettings
    readonly property CalibrationSettingsPage calibrationPage: calibrationSettings
    readonly property MeterSettingsPage meterPage: meterSettings
    readonly property QLabSettingsPage qlabPage: qlabSettings
    readonly property MicSettings micPage: micSettings
    readonly property CrewSettings crewPage: crewSettings
    readonly property Item displayPage: displaySettings.item
    readonly property DataSettingsPage dataPage: dataSettings
    property alias currentPage: tabs.currentIndex

    // Export Session…, which the main window carries out.
    signal exportRequested

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
        anchors.margins: 12
        spacing: 12

        TabBar {
            id: tabs
            objectName: "settingsTabs"
            Layout.fillWidth: true
            Repeater {
                model: [
                    {"title": "Audio", "symbol": "mic"},
                    {"title": "Calibration", "symbol": "tuningfork"},
                    {"title": "Meter", "symbol": "gauge.with.dots.needle.50percent"},
                    {"title": "QLab", "symbol": "play.rectangle"},
                    {"title": "Mics", "symbol": "mic.badge.xmark"},
                    {"title": "Crew", "symbol": "person.2.wave.2"},
                    {"title": "Display", "symbol": "display"},
                    {"title": "Data", "symbol": "tray.full"}
                ]
                TabButton {
                    required property var modelData
                    objectName: "settingsTab" + modelData.title
                    text: modelData.title
                    // As wide as its title, so that eight pages fit in the window's width.
                    width: implicitWidth
                    // The symbol over the title, so that eight pages fit in the window's width.
                    contentItem: Column {
                        spacing: 2
                        SymbolIcon {
                            anchors.horizontalCenter: parent.horizontalCenter
                            name: modelData.symbol
                            color: Theme.primary
                        }
                        Label {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: modelData.title
                            font.pixelSize: 12
                            color: Theme.primary
                        }
                    }
                }
            }
        }
        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: tabs.currentIndex
            AudioSettingsPage {
                id: audioSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
            }
            CalibrationSettingsPage {
                id: calibrationSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
            }
            MeterSettingsPage {
                id: meterSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
            }
            QLabSettingsPage {
                id: qlabSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
            }
            MicSettings {
                id: micSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
            }
            CrewSettings {
                id: crewSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
            }
            // Built when its tab is first opened: thresholds crossed by hand stop the process
            // there, not at launch.
            Loader {
                id: displaySettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                active: false
                sourceComponent: DisplaySettingsPage {
                    appModel: root.appModel
                }
            }
            DataSettingsPage {
                id: dataSettings
                Layout.fillWidth: true
                Layout.fillHeight: true
                appModel: root.appModel
                onExportRequested: root.exportRequested()
            }
        }
    }

    // Opens the page of that title; an unknown title changes nothing.
    function showPage(title) {
        for (let index = 0; index < tabs.count; ++index) {
            if (tabs.itemAt(index).text === title) {
                tabs.currentIndex = index
                return true
            }
        }
        return false
    }

    Connections {
        target: tabs
        function onCurrentIndexChanged() {
            if (tabs.currentItem && tabs.currentItem.text === "Display")
                displaySettings.active = true
        }
    }
}
