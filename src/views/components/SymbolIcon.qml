import QtQuick
import Ostrel.Components

// One symbol of the mapping table, drawn with the icon font or as its plain-text stand-in.
Text {
    required property string name
    property real size: 16

    text: Symbols.text(name)
    font.family: Symbols.fontFamily
    font.pixelSize: size
    Accessible.ignored: true
}
