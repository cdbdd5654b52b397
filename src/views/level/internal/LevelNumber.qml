import QtQuick
import Ostrel.Components
import Ostrel.Level

// The level itself, in light digits of one width, coloured by its range.
Row {
    id: root

    required property LevelReadoutModel readout
    readonly property string text: readout.numberText
    readonly property font font: metrics.font

    objectName: "levelNumber"
    opacity: readout.numberOpacity
    Accessible.role: Accessible.StaticText
    Accessible.name: readout.accessibleName
    Accessible.description: readout.accessibleValue

    TextMetrics {
        id: metrics
        font.pixelSize: root.readout.numberSize
        font.weight: Font.Light
    }
    Binding {
        target: root.readout
        property: "numberFont"
        value: metrics.font
    }

    Repeater {
        model: root.readout.numberCells
        Text {
            required property var modelData
            width: modelData.width
            horizontalAlignment: Text.AlignHCenter
            text: modelData.text
            font: metrics.font
            color: Theme.colors[root.readout.colorRole]
            Accessible.ignored: true
        }
    }
}
