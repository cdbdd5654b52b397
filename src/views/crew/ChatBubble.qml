import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew
import "internal"

// One chat message: this station's own at the trailing edge, others' at the leading one, urgent
// ones in red with "Got It" for the stations that still have to answer.
ColumnLayout {
    id: root

    required property string messageId
    required property bool isMine
    required property string senderText
    required property string timeText
    required property string cueText
    required property string text
    required property string symbol
    required property bool isUrgent
    required property string accessibleName
    required property int backgroundRole
    required property real backgroundOpacity
    required property bool usesWhiteText
    required property bool showsGotIt
    required property string seenByText

    signal acknowledged(string messageId)

    spacing: 3

    Row {
        Layout.alignment: root.isMine ? Qt.AlignRight : Qt.AlignLeft
        spacing: 4
        Text {
            text: root.senderText
            font.pixelSize: 11
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        Text {
            text: root.timeText
            font.pixelSize: 11
            font.family: "monospace"
            color: Theme.secondary
        }
        Text {
            visible: root.cueText !== ""
            text: root.cueText
            font.pixelSize: 11
            color: Theme.secondary
        }
    }
    Rectangle {
        objectName: "chatBubble"
        Layout.alignment: root.isMine ? Qt.AlignRight : Qt.AlignLeft
        Layout.maximumWidth: root.width * 0.85
        implicitWidth: Math.min(label.implicitWidth, root.width * 0.85 - 20) + 20
        implicitHeight: label.implicitHeight + 14
        radius: 10
        color: {
            const base = Theme.colors[root.backgroundRole]
            return Qt.rgba(base.r, base.g, base.b, base.a * root.backgroundOpacity)
        }
        Accessible.role: Accessible.StaticText
        Accessible.name: root.accessibleName

        BubbleLabel {
            id: label
            anchors.fill: parent
            anchors.leftMargin: 10
            anchors.rightMargin: 10
            anchors.topMargin: 7
            anchors.bottomMargin: 7
            title: root.text
            symbol: root.symbol
            color: root.usesWhiteText ? "white" : Theme.primary
        }
    }
    Button {
        objectName: "gotItButton"
        Layout.alignment: root.isMine ? Qt.AlignRight : Qt.AlignLeft
        visible: root.showsGotIt
        text: "Got It"
        onClicked: root.acknowledged(root.messageId)
    }
    Row {
        Layout.alignment: root.isMine ? Qt.AlignRight : Qt.AlignLeft
        visible: root.seenByText !== ""
        spacing: 4
        SymbolIcon {
            name: "checkmark"
            size: 12
            color: Theme.secondary
        }
        Text {
            objectName: "seenBy"
            text: root.seenByText
            font.pixelSize: 11
            color: Theme.secondary
        }
    }
}
