import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Level

// The large number, its unit, the peak and the meter description, all sized by `numberSize`,
// with padding all round.
Item {
    id: root

    required property MeterModel meter
    required property MeasurementSettings measurement
    required property DisplaySettings display
    // The main screen's station, whose display questions rule; none in a replay.
    property AppModel station: null
    property real numberSize: 132
    readonly property LevelReadoutModel readout: readoutModel

    // "Uncalibrated" was clicked.
    signal calibrationRequested()

    implicitWidth: column.implicitWidth + 2 * readoutModel.padding
    implicitHeight: column.implicitHeight + 2 * readoutModel.padding

    LevelReadoutModel {
        id: readoutModel
        meter: root.meter
        display: root.display
        numberSize: root.numberSize
    }

    ColumnLayout {
        id: column
        anchors.centerIn: parent
        spacing: 0

        LevelNumber {
            Layout.alignment: Qt.AlignHCenter
            readout: readoutModel
        }
        Text {
            Layout.alignment: Qt.AlignHCenter
            text: readoutModel.unitText
            font.pixelSize: readoutModel.unitSize
            font.weight: Font.Medium
            color: Theme.secondary
        }
        PeakNumber {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: readoutModel.padding
            readout: readoutModel
        }
        MeterDescription {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: readoutModel.padding
            meter: root.meter
            measurement: root.measurement
            display: root.display
            station: root.station
            size: readoutModel.descriptionSize
            onCalibrationRequested: root.calibrationRequested()
        }
    }
}
