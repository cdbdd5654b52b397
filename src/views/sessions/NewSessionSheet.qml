import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Sessions

// "New Session": what will be recorded, a name, and how long the free disk lasts.
Dialog {
    id: root

    required property AppModel appModel
    readonly property NewSessionModel sheet: sheetModel

    objectName: "newSessionSheet"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    visible: appModel.isPresentingNewSession
    closePolicy: Popup.CloseOnEscape
    width: sheetModel.width
    padding: 20

    NewSessionModel {
        id: sheetModel
        appModel: root.appModel
    }

    contentItem: ColumnLayout {
        spacing: 12

        ColumnLayout {
            spacing: 4
            Label {
                text: sheetModel.title
                font.pixelSize: 22
                font.weight: Font.DemiBold
                color: Theme.primary
            }
            Label {
                Layout.fillWidth: true
                text: sheetModel.explanation
                wrapMode: Text.WordWrap
                color: Theme.secondary
            }
        }
        TextField {
            id: nameField
            objectName: "sessionName"
            Layout.fillWidth: true
            placeholderText: sheetModel.namePrompt
            Accessible.name: "Name"
            onAccepted: root.accept()
        }
        RowLayout {
            visible: sheetModel.showsEstimate
            spacing: 6
            SymbolIcon {
                name: sheetModel.estimateSymbol
                color: Theme.colors[sheetModel.estimateColorRole]
            }
            Label {
                Layout.fillWidth: true
                text: sheetModel.estimateText
                wrapMode: Text.WordWrap
                color: Theme.secondary
                font.pixelSize: 12
            }
        }
    }

    footer: DialogButtonBox {
        Button {
            text: "Cancel"
            DialogButtonBox.buttonRole: DialogButtonBox.RejectRole
        }
        Button {
            text: "Start Session"
            highlighted: true
            DialogButtonBox.buttonRole: DialogButtonBox.AcceptRole
        }
    }

    onOpened: {
        nameField.text = ""
        nameField.forceActiveFocus()
    }
    onAccepted: sheetModel.start(nameField.text)
    onRejected: sheetModel.cancel()
}
