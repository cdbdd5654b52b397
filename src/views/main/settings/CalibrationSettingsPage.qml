import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Calibration
import Ostrel.Main

// The Calibration page: the calibration in force, the assistant, and the advanced offset.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property CalibrationPageModel page: pageModel
    readonly property CalibrationAssistant assistant: calibrationAssistant
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

        SettingsHeader {
            text: "Microphone Correction"
        }
        SettingsRow {
            title: "Correction File"
            Label {
                objectName: "correctionText"
                text: pageModel.correctionText
                color: Theme.secondary
            }
            Button {
                objectName: "removeCorrectionButton"
                visible: pageModel.hasCorrection
                text: "Remove"
                onClicked: pageModel.removeCorrection()
            }
        }
        SettingsFooter {
            text: "Corrects the spectrum and dB SPL for your microphone's frequency response. Use the on-axis (0°) file if the microphone points at the stage. The correction is zero at 1 kHz, so your calibrator reading still holds. Microphones such as the Behringer ECM8000 don't come with a file of their own; calibration labs can measure yours and supply one."
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
