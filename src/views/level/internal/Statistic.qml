import QtQuick
import Ostrel.Components

// One statistic: its caption and its value in decibels.
Row {
    id: root

    required property string caption
    required property string value
    property real fontSize: 14

    Accessible.role: Accessible.StaticText
    Accessible.name: caption
    Accessible.description: value

    Text {
        text: root.caption
        font.pixelSize: root.fontSize
        color: Theme.secondary
    }
    Text {
        text: root.value
        font.pixelSize: root.fontSize
        font.weight: Font.Medium
        color: Theme.primary
    }
}
