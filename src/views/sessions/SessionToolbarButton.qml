import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Sessions

// Starts a show, or during one shows its running time and ends it. Like every toolbar item it
// shows its symbol; its title is its help text and accessible name.
ToolButton {
    id: root

    required property AppModel appModel
    readonly property SessionButtonModel button: buttonModel

    objectName: "sessionButton"
    hoverEnabled: true
    ToolTip.text: buttonModel.helpText
    ToolTip.visible: hovered
    ToolTip.delay: 800
    Accessible.name: buttonModel.accessibleName

    SessionButtonModel {
        id: buttonModel
        appModel: root.appModel
    }

    contentItem: RowLayout {
        spacing: 6
        SymbolIcon {
            visible: !buttonModel.isRunning
            name: buttonModel.startSymbol
            color: Theme.secondary
        }
        Rectangle {
            visible: buttonModel.isRunning
            Layout.leftMargin: 4
            width: 7
            height: 7
            radius: 3.5
            color: Theme.colors[buttonModel.dotColorRole]
        }
        Label {
            visible: buttonModel.isRunning
            Layout.rightMargin: 4
            text: buttonModel.elapsedText
            font.family: "monospace"
            color: Theme.primary
        }
    }

    onClicked: buttonModel.trigger()
}
