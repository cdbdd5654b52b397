import QtQuick
import Ostrel.Components
import Ostrel.Level

// The level itself, in light digits, coloured by its range.
Text {
    required property LevelReadoutModel readout

    objectName: "levelNumber"
    text: readout.numberText
    font.pixelSize: readout.numberSize
    font.weight: Font.Light
    color: Theme.colors[readout.colorRole]
    opacity: readout.numberOpacity
    Accessible.role: Accessible.StaticText
    Accessible.name: readout.accessibleName
    Accessible.description: readout.accessibleValue
}
