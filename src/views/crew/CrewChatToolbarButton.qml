import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew

// Opens and closes the crew's chat column; a red badge counts what arrived unseen.
ToolButton {
    id: root

    required property CrewLink crew
    // Whether the chat column is shown.
    property bool showsChat: false
    readonly property CrewChatButtonModel button: buttonModel

    signal toggleRequested

    objectName: "crewChatButton"
    visible: buttonModel.isVisible
    checkable: false
    highlighted: root.showsChat
    hoverEnabled: true
    ToolTip.text: buttonModel.help
    ToolTip.visible: hovered
    ToolTip.delay: 800
    Accessible.name: buttonModel.title
    Accessible.description: buttonModel.accessibleValue

    CrewChatButtonModel {
        id: buttonModel
        crew: root.crew
    }

    contentItem: SymbolIcon {
        name: buttonModel.symbol
        color: root.showsChat ? Theme.accent : Theme.secondary
        horizontalAlignment: Text.AlignHCenter
    }

    Rectangle {
        objectName: "unreadBadge"
        visible: buttonModel.showsBadge
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.topMargin: -2
        anchors.rightMargin: -4
        width: Math.max(16, badgeText.implicitWidth + 8)
        height: Math.max(16, badgeText.implicitHeight + 2)
        radius: height / 2
        color: Theme.colors[buttonModel.badgeColorRole]
        Text {
            id: badgeText
            anchors.centerIn: parent
            text: buttonModel.badgeText
            font.pixelSize: 10
            font.bold: true
            color: "white"
        }
    }

    onClicked: root.toggleRequested()
}
