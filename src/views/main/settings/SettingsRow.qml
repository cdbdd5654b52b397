import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components

// One row of a settings form: its title at the leading edge, its control at the trailing one.
RowLayout {
    id: row

    required property string title
    default property alias control: slot.data

    Layout.fillWidth: true
    spacing: 12

    Label {
        Layout.fillWidth: true
        text: row.title
        color: Theme.primary
    }
    RowLayout {
        id: slot
        spacing: 8
    }
}
