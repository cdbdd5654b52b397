import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Mics

// "Add Receiver": the kind, the address, a label, and the password an EW-DX needs.
Dialog {
    id: root

    required property MicMonitor mics
    readonly property AddReceiverModel form: formModel

    objectName: "addReceiverSheet"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    closePolicy: Popup.CloseOnEscape
    width: Math.min(440, parent ? parent.width - 24 : 440)
    padding: 20

    AddReceiverModel {
        id: formModel
        mics: root.mics
    }

    onAccepted: formModel.add()
    onRejected: formModel.reset()

    contentItem: ColumnLayout {
        spacing: 10

        Label {
            text: "Add Receiver"
            font.pixelSize: 20
            font.weight: Font.DemiBold
            color: Theme.primary
        }
        GridLayout {
            Layout.fillWidth: true
            columns: 2
            columnSpacing: 12
            rowSpacing: 8

            Label { text: "Type"; color: Theme.primary }
            ComboBox {
                objectName: "receiverKind"
                Layout.fillWidth: true
                model: formModel.kindTitles
                currentIndex: formModel.kindIndex
                onActivated: index => formModel.kindIndex = index
                Accessible.name: "Type"
            }
            Label { text: "IP Address"; color: Theme.primary }
            TextField {
                objectName: "receiverHost"
                Layout.fillWidth: true
                placeholderText: "192.168.1.50"
                text: formModel.host
                onTextEdited: formModel.host = text
                Accessible.name: "IP Address"
            }
            Label { text: "Label"; color: Theme.primary }
            TextField {
                objectName: "receiverLabel"
                Layout.fillWidth: true
                placeholderText: "Optional, e.g. Rack A"
                text: formModel.label
                onTextEdited: formModel.label = text
                Accessible.name: "Label"
            }
            Label {
                visible: formModel.showsPassword
                text: "Password"
                color: Theme.primary
            }
            TextField {
                objectName: "receiverPassword"
                Layout.fillWidth: true
                visible: formModel.showsPassword
                echoMode: TextInput.Password
                placeholderText: "3rd Party Access password"
                text: formModel.password
                onTextEdited: formModel.password = text
                Accessible.name: "Password"
            }
        }
        Label {
            objectName: "receiverHint"
            Layout.fillWidth: true
            text: formModel.hint
            wrapMode: Text.WordWrap
            font.pixelSize: 11
            color: Theme.secondary
        }
    }

    footer: DialogButtonBox {
        Button {
            text: "Cancel"
            DialogButtonBox.buttonRole: DialogButtonBox.RejectRole
        }
        Button {
            objectName: "addButton"
            text: "Add"
            highlighted: true
            enabled: formModel.canAdd
            DialogButtonBox.buttonRole: DialogButtonBox.AcceptRole
        }
    }
}
