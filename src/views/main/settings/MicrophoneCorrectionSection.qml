import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// Where a microphone's calibration file is loaded, shown with its response and removed.
ColumnLayout {
    id: root

    required property CalibrationPageModel page
    required property MeasurementSettings measurement
    readonly property FileDialog dialog: correctionDialog
    readonly property ResponseChart chart: responseChart

    spacing: 8

    SettingsHeader {
        text: "Microphone Correction"
    }
    SettingsRow {
        title: "Correction File"
        Label {
            objectName: "correctionText"
            text: root.page.correctionText
            color: Theme.secondary
        }
    }
    SettingsRow {
        visible: root.page.hasCorrection
        title: "Covers"
        Label {
            objectName: "coversText"
            text: root.page.coversText
            color: Theme.secondary
        }
    }
    Item {
        objectName: "responseChartFrame"
        visible: root.page.hasCorrection
        Layout.fillWidth: true
        Layout.preferredHeight: 160
        Layout.bottomMargin: 6

        TextMetrics {
            id: labelMetrics
            font.pixelSize: 10
        }
        ResponseChart {
            id: responseChart
            objectName: "responseChart"
            anchors.left: parent.left
            anchors.top: parent.top
            anchors.topMargin: 4
            anchors.right: parent.right
            anchors.rightMargin: 26
            anchors.bottom: parent.bottom
            anchors.bottomMargin: labelMetrics.height + 4
            measurement: root.measurement
            curveColor: Theme.accent
            ruleColor: Theme.secondary
            gridColor: Theme.quaternary
            Accessible.role: Accessible.Chart
            Accessible.name: accessibleName
            Accessible.description: accessibleValue
        }
        Text {
            objectName: "flatRuleLabel"
            x: 4
            y: responseChart.y + responseChart.flatY - height - 1
            text: responseChart.ruleName
            font: labelMetrics.font
            color: Theme.secondary
            Accessible.ignored: true
        }
        Repeater {
            model: responseChart.levelTicks
            Text {
                required property var modelData
                x: responseChart.x + responseChart.width + 4
                y: responseChart.y + modelData.y - height / 2
                text: modelData.text
                font: labelMetrics.font
                color: Theme.tertiary
                Accessible.ignored: true
            }
        }
        Repeater {
            model: responseChart.frequencyTicks
            Text {
                required property var modelData
                x: Math.max(0, Math.min(modelData.x - width / 2, responseChart.width - width))
                y: responseChart.y + responseChart.height + 2
                text: modelData.text
                font: labelMetrics.font
                color: Theme.tertiary
                Accessible.ignored: true
            }
        }
    }
    RowLayout {
        objectName: "loadError"
        visible: root.page.loadError !== ""
        Layout.fillWidth: true
        spacing: 6
        SymbolIcon {
            Layout.alignment: Qt.AlignTop
            name: "exclamationmark.triangle.fill"
            color: Theme.colors[root.page.warningColorRole]
        }
        Label {
            objectName: "loadErrorText"
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: root.page.loadError
            color: Theme.primary
        }
    }
    SettingsFooter {
        text: "Corrects the spectrum and dB SPL for your microphone's frequency response. Use the on-axis (0°) file if the microphone points at the stage. The correction is zero at 1 kHz, so your calibrator reading still holds. Microphones such as the Behringer ECM8000 don't come with a file of their own; calibration labs can measure yours and supply one."
    }
    RowLayout {
        spacing: 8
        Button {
            objectName: "loadCorrectionButton"
            text: "Load Correction File…"
            onClicked: correctionDialog.open()
        }
        Button {
            objectName: "removeCorrectionButton"
            visible: root.page.hasCorrection
            text: "Remove"
            onClicked: root.page.removeCorrection()
        }
    }

    FileDialog {
        id: correctionDialog
        objectName: "correctionDialog"
        title: "Choose a Microphone Calibration File"
        acceptLabel: "Load Correction File…"
        fileMode: FileDialog.OpenFile
        // Any file type: labs name their files .txt, .frd, .cal or nothing at all.
        nameFilters: ["All files (*)"]
        onAccepted: root.page.loadCorrectionFile(selectedFile)
    }
}
