import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew
import "internal"

// One tap to tell the whole crew: a mic has died, a pack is being swapped, feedback, stand by,
// done. The picker names the radio mic.
ColumnLayout {
    id: root

    required property CrewLink crew
    property var micNames: []
    property string cueLabel: ""
    property alias micName: alertModel.micName
    readonly property QuickAlertBarModel alerts: alertModel

    spacing: 8

    QuickAlertBarModel {
        id: alertModel
        crew: root.crew
        micNames: root.micNames
        cueLabel: root.cueLabel
    }

    Label {
        text: alertModel.heading
        font.pixelSize: 11
        color: Theme.secondary
    }
    ComboBox {
        objectName: "micPicker"
        Layout.fillWidth: true
        visible: alertModel.showsMicPicker
        model: alertModel.micChoices
        currentIndex: alertModel.micIndex
        onActivated: index => alertModel.micIndex = index
        hoverEnabled: true
        ToolTip.text: alertModel.micPickerHelp
        ToolTip.visible: hovered
        ToolTip.delay: 800
    }
    Label {
        objectName: "noMicNames"
        Layout.fillWidth: true
        visible: !alertModel.showsMicPicker
        text: alertModel.noMicNamesText
        wrapMode: Text.WordWrap
        font.pixelSize: 11
        color: Theme.secondary
    }
    GridLayout {
        objectName: "quickAlertGrid"
        Layout.fillWidth: true
        columns: 2
        rowSpacing: alertModel.spacing
        columnSpacing: alertModel.spacing
        enabled: alertModel.isEnabled

        Repeater {
            model: alertModel.alerts

            Button {
                id: alertButton
                required property var modelData
                required property int index
                objectName: "quickAlert" + index
                Layout.fillWidth: true
                hoverEnabled: true
                ToolTip.text: modelData.help
                ToolTip.visible: hovered
                ToolTip.delay: 800
                Accessible.name: modelData.title
                contentItem: BubbleLabel {
                    title: alertButton.modelData.title
                    symbol: alertButton.modelData.symbol
                    color: Theme.colors[alertButton.modelData.colorRole]
                    opacity: alertButton.enabled ? 1 : 0.4
                }
                onClicked: alertModel.send(index)
            }
        }
    }
}
