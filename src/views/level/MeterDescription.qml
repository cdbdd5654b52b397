import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Level

// The meter setting, then the status in words, then the calibration warning while it applies.
Row {
    id: root

    required property MeterModel meter
    required property MeasurementSettings measurement
    required property DisplaySettings display
    // The main screen's station, whose display questions rule; none in a replay.
    property AppModel station: null
    property real size: 22
    readonly property MeterDescriptionModel description: descriptionModel

    // "Uncalibrated" was clicked.
    signal calibrationRequested()

    spacing: descriptionModel.spacing

    MeterDescriptionModel {
        id: descriptionModel
        meter: root.meter
        measurement: root.measurement
        display: root.display
        station: root.station
        size: root.size
        onSettingsRequested: root.calibrationRequested()
    }

    Text {
        text: descriptionModel.weightingText
        font.pixelSize: descriptionModel.size
        font.weight: Font.DemiBold
        color: Theme.secondary
    }
    Text {
        text: descriptionModel.responseText
        font.pixelSize: descriptionModel.size
        color: Theme.secondary
    }
    Text {
        objectName: "statusLabel"
        text: descriptionModel.statusText
        font.pixelSize: descriptionModel.size
        font.weight: Font.Medium
        color: Theme.colors[descriptionModel.statusColorRole]
        Accessible.role: Accessible.StaticText
        Accessible.name: descriptionModel.statusAccessibleText
    }
    Text {
        objectName: "uncalibratedLabel"
        visible: descriptionModel.showsUncalibrated
        text: descriptionModel.uncalibratedText
        font.pixelSize: descriptionModel.size
        color: Theme.colors[descriptionModel.uncalibratedColorRole]
        ToolTip.text: descriptionModel.uncalibratedHelp
        ToolTip.visible: uncalibratedHover.hovered
        ToolTip.delay: 500
        Accessible.role: Accessible.Button
        Accessible.name: descriptionModel.uncalibratedText
        Accessible.description: descriptionModel.uncalibratedHelp

        HoverHandler {
            id: uncalibratedHover
            cursorShape: Qt.PointingHandCursor
        }
        TapHandler {
            onTapped: descriptionModel.openSettings()
        }
    }
}
