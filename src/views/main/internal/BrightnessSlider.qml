import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// The toolbar's brightness control, between a small and a large sun.
Control {
    id: root

    required property BrightnessOverlay brightness

    leftPadding: 6
    rightPadding: 6
    topPadding: 4
    bottomPadding: 4
    ToolTip.text: brightness.helpText
    ToolTip.visible: hovered
    ToolTip.delay: 800
    hoverEnabled: true

    contentItem: RowLayout {
        spacing: 6

        SymbolIcon {
            name: root.brightness.dimmerSymbol
            color: Theme.secondary
        }
        Slider {
            objectName: "brightnessSlider"
            Layout.preferredWidth: 110
            from: root.brightness.minimum
            to: root.brightness.maximum
            stepSize: 0
            value: root.brightness.brightness
            onMoved: root.brightness.brightness = value
            Accessible.name: root.brightness.accessibleName
            Accessible.description: root.brightness.accessibleValue
        }
        SymbolIcon {
            name: root.brightness.brighterSymbol
            color: Theme.secondary
        }
    }
}
