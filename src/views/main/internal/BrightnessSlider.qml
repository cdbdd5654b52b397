import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// The toolbar's brightness control, between a small and a large sun.
Control {
    id: root

    required property BrightnessOverlay brightness
    property bool showsSymbols: true

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
            visible: root.showsSymbols
            name: root.brightness.dimmerSymbol
            color: Theme.secondary
        }
        Slider {
            id: slider
            objectName: "brightnessSlider"
            Layout.preferredWidth: 110
            from: root.brightness.minimumPercent
            to: root.brightness.maximumPercent
            // A percent is about a pixel of this slider; keys move by one.
            stepSize: 1
            // Not onMoved: a screen reader sets the value without moving the handle. The Binding
            // outlives such an assignment, so the shortcuts still move the slider afterwards.
            // Before completion the value is only being clamped into the range, not chosen.
            property bool complete: false
            Component.onCompleted: complete = true
            onValueChanged: if (complete) root.brightness.setPercent(value)
            Binding {
                target: slider
                property: "value"
                value: root.brightness.percent
            }
            // Qt 6.4's accessible value interface reads the range under these older names.
            readonly property real minimumValue: from
            readonly property real maximumValue: to
            Accessible.name: root.brightness.accessibleName
            Accessible.description: root.brightness.accessibleValue
        }
        SymbolIcon {
            visible: root.showsSymbols
            name: root.brightness.brighterSymbol
            color: Theme.secondary
        }
    }
}
