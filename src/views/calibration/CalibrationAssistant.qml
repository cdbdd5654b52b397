import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Calibration

// A sheet that walks the user through calibrating with an acoustic calibrator.
Dialog {
    id: root

    required property AppModel appModel
    readonly property CalibrationAssistantModel assistant: assistantModel

    objectName: "calibrationAssistant"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    visible: assistantModel.isOpen
    closePolicy: Popup.CloseOnEscape
    width: Math.min(440, parent ? parent.width - 24 : 440)
    padding: 20
    // Its own colours: it opens over whatever window holds it.
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.highlight: Theme.accent

    function present() {
        assistantModel.open()
    }

    // A level typed but not yet confirmed counts when the page's button is pressed.
    function commitReference() {
        if (referenceField.acceptableInput)
            assistantModel.referenceLevel = Number(referenceField.text)
    }

    CalibrationAssistantModel {
        id: assistantModel
        appModel: root.appModel
    }

    contentItem: ColumnLayout {
        spacing: 14

        SymbolIcon {
            objectName: "assistantSymbol"
            Layout.alignment: Qt.AlignHCenter
            name: assistantModel.symbol
            size: 40
            color: Theme.colors[assistantModel.symbolColorRole]
        }
        Label {
            objectName: "assistantTitle"
            Layout.alignment: Qt.AlignHCenter
            text: assistantModel.title
            font.pixelSize: 20
            font.weight: Font.DemiBold
            color: Theme.primary
        }
        Label {
            objectName: "assistantText"
            Layout.fillWidth: true
            visible: text.length > 0
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: assistantModel.text
            color: Theme.secondary
        }
        InputPicker {
            Layout.fillWidth: true
            visible: assistantModel.showsInputPicker
            audio: root.appModel.audio
            input: root.appModel.settings.input
        }
        RowLayout {
            objectName: "referenceLevelField"
            Layout.alignment: Qt.AlignHCenter
            visible: assistantModel.showsReferenceField
            spacing: 8
            Label {
                text: assistantModel.referenceCaption
                color: Theme.primary
            }
            TextField {
                id: referenceField
                objectName: "referenceLevel"
                Layout.preferredWidth: 70
                horizontalAlignment: Text.AlignRight
                text: assistantModel.referenceLevel.toFixed(1)
                validator: DoubleValidator {
                    locale: "C"
                    bottom: 60
                    top: 150
                    decimals: 1
                    notation: DoubleValidator.StandardNotation
                }
                Accessible.name: assistantModel.referenceCaption
                onEditingFinished: root.commitReference()
            }
            Label {
                text: assistantModel.referenceUnit
                color: Theme.secondary
            }
        }
        ProgressBar {
            objectName: "calibrationProgress"
            Layout.fillWidth: true
            visible: assistantModel.showsProgress
            value: assistantModel.progress
        }
        GridLayout {
            objectName: "calibrationResult"
            Layout.alignment: Qt.AlignHCenter
            visible: assistantModel.showsResult
            columns: 2
            columnSpacing: 12
            rowSpacing: 4
            Label {
                text: assistantModel.offsetCaption
                color: Theme.secondary
            }
            Label {
                objectName: "calibrationOffset"
                text: assistantModel.offsetText
                font.pixelSize: 18
                font.weight: Font.DemiBold
                color: Theme.primary
            }
            Label {
                text: assistantModel.measuredCaption
                color: Theme.secondary
            }
            Label {
                objectName: "calibrationMeasured"
                text: assistantModel.measuredText
                color: Theme.primary
            }
        }
    }

    footer: DialogButtonBox {
        Button {
            objectName: "assistantCancel"
            text: assistantModel.cancelTitle
            DialogButtonBox.buttonRole: DialogButtonBox.RejectRole
        }
        Button {
            objectName: "assistantPrimary"
            text: assistantModel.primaryTitle
            enabled: assistantModel.primaryEnabled
            highlighted: true
            onClicked: {
                if (assistantModel.showsReferenceField) root.commitReference()
                assistantModel.primary()
            }
        }
    }

    onRejected: assistantModel.cancel()
    onClosed: if (assistantModel.isOpen) assistantModel.cancel()
}
