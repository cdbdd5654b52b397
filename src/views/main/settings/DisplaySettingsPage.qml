import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// The Display page: appearance and graph span, the colour thresholds, the main screen, the
// wording and the spectrum.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property DisplayPageModel page: pageModel

    contentWidth: availableWidth

    DisplayPageModel {
        id: pageModel
        display: root.appModel.settings.display
    }

    ColumnLayout {
        width: root.availableWidth
        spacing: 8

        SettingsRow {
            title: "Appearance"
            ComboBox {
                objectName: "appearancePicker"
                model: pageModel.appearanceOptions
                currentIndex: pageModel.appearanceIndex
                onActivated: index => pageModel.appearanceIndex = index
            }
        }
        SettingsRow {
            title: "Graph Duration"
            ComboBox {
                objectName: "graphDurationPicker"
                model: pageModel.graphDurationOptions
                currentIndex: pageModel.graphDurationIndex
                onActivated: index => pageModel.graphDurationIndex = index
            }
        }

        SettingsHeader {
            text: "Colour Thresholds"
        }
        SettingsRow {
            title: "Elevated from"
            SpinBox {
                objectName: "elevatedStepper"
                from: pageModel.elevatedLower
                to: pageModel.elevatedUpper
                stepSize: 1
                textFromValue: value => value + " dB"
                value: pageModel.elevatedThreshold
                onValueModified: pageModel.elevatedThreshold = value
                Accessible.name: "Elevated from"
            }
        }
        SettingsRow {
            title: "High from"
            SpinBox {
                objectName: "highStepper"
                from: pageModel.highLower
                to: pageModel.highUpper
                stepSize: 1
                textFromValue: value => value + " dB"
                value: pageModel.highThreshold
                onValueModified: pageModel.highThreshold = value
                Accessible.name: "High from"
            }
        }
        SettingsFooter {
            text: "The level turns orange when elevated and red when high."
        }

        SettingsHeader {
            text: "Main Screen"
        }
        Switch {
            objectName: "showGraphSwitch"
            Layout.fillWidth: true
            text: "Show level graph and spectrum"
            checked: pageModel.showModeShowsGraph
            onToggled: pageModel.showModeShowsGraph = checked
        }
        SettingsRow {
            title: "Brightness"
            Slider {
                objectName: "brightnessSlider"
                from: 0.2
                to: 1.0
                value: pageModel.screenBrightness
                onMoved: pageModel.screenBrightness = value
                Accessible.name: "Screen brightness"
            }
            Label {
                objectName: "brightnessText"
                // Digits of fixed width, so the value does not jitter as it changes.
                font.family: "monospace"
                Layout.preferredWidth: 40
                horizontalAlignment: Text.AlignRight
                text: pageModel.brightnessText
                color: Theme.primary
            }
        }

        Switch {
            objectName: "unhingedSwitch"
            Layout.fillWidth: true
            Layout.topMargin: 8
            text: "Unhinged Mode"
            checked: pageModel.unhingedMode
            onToggled: pageModel.unhingedMode = checked
        }
        SettingsFooter {
            text: "Swaps the status text for swearing. Contains strong language. VoiceOver keeps the normal wording."
        }

        SettingsRow {
            title: "Spectrum Style"
            ComboBox {
                objectName: "spectrumStylePicker"
                model: pageModel.spectrumStyleOptions
                currentIndex: pageModel.spectrumStyleIndex
                onActivated: index => pageModel.spectrumStyleIndex = index
            }
        }
        SettingsRow {
            title: "Resolution"
            ComboBox {
                objectName: "resolutionPicker"
                enabled: pageModel.resolutionEnabled
                model: pageModel.resolutionOptions
                currentIndex: pageModel.resolutionIndex
                onActivated: index => pageModel.resolutionIndex = index
            }
        }
        SettingsFooter {
            objectName: "spectrumFooter"
            text: pageModel.spectrumFooter
        }
    }
}
