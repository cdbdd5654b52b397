import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew

// The crew's chat: who is there, the messages, the quick alerts and the composer. While it is in
// view, arrivals do not count as unread.
Pane {
    id: root

    required property CrewLink crew
    property var micNames: []
    property string cueLabel: ""
    readonly property CrewChatPanelModel panel: panelModel
    readonly property ChatMessagesModel messages: messagesModel
    readonly property QuickAlertBar quickAlerts: alertBar
    readonly property Item field: messageField

    padding: 0
    implicitWidth: panelModel.idealWidth
    background: Rectangle {
        color: Theme.surface
    }

    CrewChatPanelModel {
        id: panelModel
        crew: root.crew
        cueLabel: root.cueLabel
    }
    ChatMessagesModel {
        id: messagesModel
        crew: root.crew
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        CrewHeader {
            Layout.fillWidth: true
            Layout.margins: 12
            crew: root.crew
        }
        Label {
            objectName: "crewProblem"
            Layout.fillWidth: true
            Layout.leftMargin: 12
            Layout.rightMargin: 12
            Layout.bottomMargin: 12
            visible: problemStatus.problem !== ""
            text: problemStatus.problem
            wrapMode: Text.WordWrap
            color: Theme.colors[problemStatus.problemColorRole]

            CrewStatusModel {
                id: problemStatus
                crew: root.crew
            }
        }
        Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.quaternary }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            Label {
                objectName: "emptyChat"
                anchors.centerIn: parent
                width: parent.width - 24
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                visible: messagesModel.isEmpty
                text: messagesModel.emptyText
                color: Theme.secondary
            }
            ListView {
                id: messageList
                objectName: "messageList"
                anchors.fill: parent
                anchors.margins: 12
                visible: !messagesModel.isEmpty
                clip: true
                spacing: 10
                model: messagesModel
                delegate: ChatBubble {
                    width: messageList.width
                    onAcknowledged: messageId => messagesModel.acknowledge(messageId)
                }
                // The newest message in view on appearing and whenever the last one changes.
                readonly property string lastMessageId: messagesModel.lastMessageId
                onLastMessageIdChanged: Qt.callLater(messageList.positionViewAtEnd)
                Component.onCompleted: positionViewAtEnd()
            }
        }
        Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.quaternary }

        QuickAlertBar {
            id: alertBar
            Layout.fillWidth: true
            Layout.margins: 12
            crew: root.crew
            micNames: root.micNames
            cueLabel: root.cueLabel
        }
        Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.quaternary }

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 12
            spacing: 6

            ScrollView {
                Layout.fillWidth: true
                // From one line to four, then it scrolls.
                Layout.preferredHeight: Math.min(messageField.implicitHeight,
                    messageField.topPadding + messageField.bottomPadding
                    + panelModel.maximumLines * fontMetrics.lineSpacing)
                TextArea {
                    id: messageField
                    objectName: "messageField"
                    placeholderText: panelModel.prompt
                    wrapMode: TextEdit.Wrap
                    text: panelModel.draft
                    onTextChanged: panelModel.draft = text
                    background: Rectangle {
                        radius: 8
                        color: Theme.background
                        border.color: Theme.quaternary
                    }
                    // Return sends; Shift+Return starts a new line.
                    Keys.onReturnPressed: event => {
                        if (event.modifiers & Qt.ShiftModifier) {
                            event.accepted = false
                            return
                        }
                        panelModel.send()
                    }
                    Keys.onEnterPressed: panelModel.send()
                }
            }
            ToolButton {
                objectName: "urgentToggle"
                checkable: true
                checked: panelModel.sendsUrgent
                onToggled: panelModel.sendsUrgent = checked
                hoverEnabled: true
                ToolTip.text: panelModel.urgentHelp
                ToolTip.visible: hovered
                ToolTip.delay: 800
                Accessible.name: panelModel.urgentTitle
                Accessible.description: panelModel.urgentHelp
                contentItem: SymbolIcon {
                    name: panelModel.urgentSymbol
                    size: 18
                    color: Theme.colors[panelModel.urgentColorRole]
                    horizontalAlignment: Text.AlignHCenter
                }
            }
            ToolButton {
                objectName: "sendButton"
                onClicked: panelModel.send()
                hoverEnabled: true
                ToolTip.text: panelModel.sendHelp
                ToolTip.visible: hovered
                ToolTip.delay: 800
                Accessible.name: panelModel.sendTitle
                contentItem: SymbolIcon {
                    name: panelModel.sendSymbol
                    size: 18
                    color: Theme.accent
                    horizontalAlignment: Text.AlignHCenter
                }
            }
        }
    }

    FontMetrics {
        id: fontMetrics
        font: messageField.font
    }

    onVisibleChanged: {
        panelModel.setShown(visible)
        if (!visible) return
        messageField.forceActiveFocus()
        Qt.callLater(messageList.positionViewAtEnd)
    }
    Component.onCompleted: {
        panelModel.setShown(visible)
        if (visible) messageField.forceActiveFocus()
    }
    Component.onDestruction: panelModel.setShown(false)
}
