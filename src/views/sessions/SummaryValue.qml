import QtQuick
import QtQuick.Layouts
import Ostrel.Components

// One figure of the summary over its label.
ColumnLayout {
    required property string label
    required property string value

    spacing: 2
    Layout.minimumWidth: 140

    Text {
        text: parent.value
        font.pixelSize: 28
        color: Theme.primary
    }
    Text {
        text: parent.label
        font.pixelSize: 13
        color: Theme.secondary
    }
}
