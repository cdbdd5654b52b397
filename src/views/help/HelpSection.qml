import QtQuick
import QtQuick.Layouts
import Ostrel.Components

// One section of the help: its title, and its text, which can be selected and copied.
ColumnLayout {
    id: root

    required property string title
    required property string text
    readonly property alias body: body

    spacing: 4

    Text {
        Layout.fillWidth: true
        text: root.title
        color: Theme.primary
        font.pixelSize: 17
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    TextEdit {
        id: body
        objectName: "helpText"
        Layout.fillWidth: true
        text: root.text
        color: Theme.secondary
        selectionColor: Theme.accent
        selectedTextColor: Theme.background
        font.pixelSize: 13
        wrapMode: TextEdit.Wrap
        readOnly: true
        selectByMouse: true
        selectByKeyboard: true
        persistentSelection: false
        Accessible.name: root.text
    }
}
