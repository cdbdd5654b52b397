import QtQuick
import QtQuick.Controls
import Ostrel.Components

// One control of the transport bar: its symbol, its title for screen readers, its help text.
ToolButton {
    id: root

    required property string symbol
    required property string title
    required property string help
    property real symbolSize: 20

    hoverEnabled: true
    ToolTip.text: help
    ToolTip.visible: hovered
    ToolTip.delay: 800
    Accessible.name: title

    contentItem: SymbolIcon {
        name: root.symbol
        size: root.symbolSize
        color: root.checked ? Theme.accent : Theme.primary
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
