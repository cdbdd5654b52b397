import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Dante

// "Dropouts": each device that went offline or came back, newest first.
ColumnLayout {
    id: root

    required property DanteMonitor dante
    readonly property DropoutLogModel log: logModel

    spacing: 6

    DropoutLogModel {
        id: logModel
        dante: root.dante
    }

    Label {
        text: logModel.headline
        font.pixelSize: 15
        font.weight: Font.DemiBold
        color: Theme.primary
    }
    Label {
        visible: logModel.isEmpty
        text: logModel.emptyText
        color: Theme.secondary
    }
    ListView {
        objectName: "dropoutList"
        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: !logModel.isEmpty
        clip: true
        model: logModel
        delegate: Row {
            required property string symbol
            required property int colorRole
            required property string device
            required property string text
            required property string time
            spacing: 8
            height: 24
            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                name: symbol
                size: 16
                color: Theme.colors[colorRole]
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: device
                font.weight: Font.DemiBold
                color: Theme.primary
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: parent.text
                color: Theme.secondary
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: time
                color: Theme.tertiary
            }
        }
    }
}
