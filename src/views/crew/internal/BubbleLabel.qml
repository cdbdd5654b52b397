import QtQuick
import QtQuick.Layouts
import Ostrel.Components

// A title with its symbol before it, for the quick alerts and the chat's urgent lines.
RowLayout {
    id: root

    required property string title
    property string symbol: ""
    property bool showsIcon: true
    property color color: Theme.primary
    property real size: 13
    property bool bold: false

    spacing: 5

    SymbolIcon {
        Layout.alignment: Qt.AlignTop
        visible: root.showsIcon && root.symbol !== ""
        name: root.symbol
        size: root.size + 2
        color: root.color
    }
    Text {
        Layout.fillWidth: true
        text: root.title
        wrapMode: Text.WordWrap
        font.pixelSize: root.size
        font.bold: root.bold
        color: root.color
        Accessible.ignored: true
    }
}
