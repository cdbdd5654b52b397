import QtQuick
import Ostrel.Components
import Ostrel.Level

// The highest instantaneous level so far, under its caption.
Row {
    id: root

    required property LevelReadoutModel readout

    spacing: root.readout.peakSpacing
    Accessible.role: Accessible.StaticText
    Accessible.name: root.readout.peakAccessibleName
    Accessible.description: root.readout.peakAccessibleValue

    Caption {
        anchors.baseline: peakValue.baseline
        text: root.readout.peakCaption
        fontSize: root.readout.peakSize
        tracking: root.readout.peakTracking
        color: Theme.secondary
    }
    Text {
        id: peakValue
        objectName: "peakNumber"
        text: root.readout.peakText
        font.pixelSize: root.readout.peakSize
        color: Theme.primary
    }
}
