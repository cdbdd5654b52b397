import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Spectrum

// "Dominant" and the strongest frequency heard.
Row {
    id: root

    required property MeterModel meter
    property real size: 15

    spacing: size * 0.4
    Accessible.role: Accessible.StaticText
    Accessible.name: dominantModel.accessibleName
    Accessible.description: dominantModel.text

    DominantFrequencyModel {
        id: dominantModel
        meter: root.meter
    }

    Text {
        anchors.baseline: value.baseline
        text: dominantModel.caption
        font.pixelSize: root.size * 0.75
        color: Theme.tertiary
    }
    Text {
        id: value
        objectName: "dominantFrequency"
        text: dominantModel.text
        font.pixelSize: root.size
        font.weight: Font.Medium
        color: Theme.secondary
    }

    HoverHandler {
        id: hover
    }
    ToolTip.text: dominantModel.helpText
    ToolTip.visible: hover.hovered
    ToolTip.delay: 500
}
