import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Spectrum

// A small button beside the spectrum's caption that opens the style and resolution choices.
ToolButton {
    id: root

    required property DisplaySettings displaySettings
    property real size: 11
    readonly property SpectrumOptionsModel options: optionsModel

    padding: 0
    implicitWidth: size * 1.8
    implicitHeight: size * 1.6
    contentItem: SymbolIcon {
        name: optionsModel.symbol
        size: root.size * 1.3
        color: Theme.tertiary
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    Accessible.name: optionsModel.accessibleName
    ToolTip.text: optionsModel.note
    ToolTip.visible: hovered
    ToolTip.delay: 800
    onClicked: menu.open()

    SpectrumOptionsModel {
        id: optionsModel
        display: root.displaySettings
    }

    Menu {
        id: menu
        objectName: "spectrumOptions"
        y: root.height

        MenuSeparator {
            contentItem: Label {
                text: optionsModel.styleTitle
                font.pixelSize: 11
                color: Theme.tertiary
            }
        }
        Repeater {
            model: optionsModel.styleTitles
            MenuItem {
                required property int index
                required property string modelData
                text: modelData
                checkable: true
                checked: optionsModel.styleIndex === index
                onTriggered: optionsModel.styleIndex = index
            }
        }
        MenuSeparator {
            contentItem: Label {
                text: optionsModel.resolutionTitle
                font.pixelSize: 11
                color: Theme.tertiary
            }
        }
        Repeater {
            model: optionsModel.resolutionTitles
            MenuItem {
                required property int index
                required property string modelData
                text: modelData
                checkable: true
                checked: optionsModel.resolutionIndex === index
                onTriggered: optionsModel.resolutionIndex = index
            }
        }
    }
}
