import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Calibration
import Ostrel.Main

// The Calibration page: the calibration in force, the assistant, the microphone correction and
// the advanced offset.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property CalibrationPageModel page: pageModel
    readonly property CalibrationAssistant assistant: calibrationAssistant
    readonly property MicrophoneCorrectionSection correction: correctionSection
    property bool showsAdvanced: false

    contentWidth: availableWidth

    CalibrationPageModel {
        id: pageModel
        measurement: root.appModel.settings.measurement
        audio: root.appModel.audio
        mode: root.appModel.mode
    }

    ColumnLayout {
        width: root.availableWidth
        spacing: 8

        SettingsRow {
            title: "Calibration Offset"
            Label {
                objectName: "offsetText"
                // Digits of fixed width, so the value does not jitter as it changes.
                font.family: "monospace"
                text: pageModel.offsetText
                color: Theme.secondary
            }
        }
        SettingsRow {
            title: "Last Calibrated"
            Label {
                objectName: "lastCalibratedText"
                text: pageModel.lastCalibratedText
                color: Theme.secondary
            }
        }
        SettingsRow {
            title: "Reference Level"
            Label {
                objectName: "referenceText"
                // Digits of fixed width, so the value does not jitter as it changes.
                font.family: "monospace"
                text: pageModel.referenceText
                color: Theme.secondary
            }
        }
        Button {
            objectName: "calibrateButton"
            text: "Calibrate Microphone…"
            enabled: pageModel.canCalibrate
            onClicked: calibrationAssistant.present()
        }

        MicrophoneCorrectionSection {
            id: correctionSection
            Layout.fillWidth: true
            page: pageModel
            measurement: root.appModel.settings.measurement
        }

        Button {
            objectName: "advancedDisclosure"
            Layout.topMargin: 8
            flat: true
            text: (root.showsAdvanced ? "\u25BE " : "\u25B8 ") + "Advanced"
            onClicked: root.showsAdvanced = !root.showsAdvanced
        }
        SettingsRow {
            visible: root.showsAdvanced
            title: "Calibration Offset"
            TextField {
                objectName: "offsetField"
                // Digits of fixed width, so the value does not jitter as it changes.
                font.family: "monospace"
                Layout.preferredWidth: 90
                horizontalAlignment: Text.AlignRight
                text: pageModel.calibrationOffset.toFixed(1)
                validator: DoubleValidator {
                    decimals: 1
                    notation: DoubleValidator.StandardNotation
                }
                onEditingFinished: {
                    if (acceptableInput)
                        pageModel.calibrationOffset = Number(text)
                }
            }
        }
        Button {
            objectName: "resetCalibrationButton"
            visible: root.showsAdvanced
            text: "Reset Calibration"
            enabled: pageModel.canReset
            palette.buttonText: Theme.colors[pageModel.destructiveColorRole]
            onClicked: pageModel.resetCalibration()
        }
    }

    CalibrationAssistant {
        id: calibrationAssistant
        appModel: root.appModel
    }
}
