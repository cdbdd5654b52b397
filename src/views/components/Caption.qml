import QtQuick
import Ostrel.Components

// A small heading over a reading, in spaced semibold capitals.
Text {
    property real fontSize: 12
    property real tracking: 1.4

    font.pixelSize: fontSize
    font.weight: Font.DemiBold
    font.letterSpacing: tracking
    color: Theme.tertiary
}
