import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Mics

// Under the current cue: which mic has dropped out (red), which is low on signal or battery
// (orange). Nothing while all is well.
Column {
    id: root

    required property AppModel appModel
    property real textScale: 1
    property bool reduceMotion: false
    readonly property MicAlertsModel alerts: alertsModel

    visible: alertsModel.isVisible
    spacing: alertsModel.spacing

    MicAlertsModel {
        id: alertsModel
        mics: root.appModel.mics
        display: root.appModel.settings.display
        shows: root.appModel.showsMicAlerts
        scale: root.textScale
    }

    Repeater {
        model: alertsModel.rows

        Rectangle {
            id: row
            required property var modelData
            objectName: "micAlert"
            width: content.implicitWidth + 2 * alertsModel.horizontalPadding
            height: content.implicitHeight + 2 * alertsModel.verticalPadding
            radius: 6 * root.textScale
            color: Qt.rgba(rowColor.r, rowColor.g, rowColor.b, alertsModel.backgroundOpacity)
            readonly property color rowColor: Theme.colors[modelData.colorRole]
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.accessibleName

            opacity: 0
            scale: 0.95
            Component.onCompleted: {
                opacity = 1
                scale = 1
            }
            Behavior on opacity {
                NumberAnimation { duration: root.reduceMotion ? 200 : 350; easing.type: Easing.InOutQuad }
            }
            Behavior on scale {
                NumberAnimation { duration: root.reduceMotion ? 200 : 350; easing.type: Easing.InOutQuad }
            }

            Row {
                id: content
                anchors.centerIn: parent
                spacing: 8 * root.textScale
                SymbolIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: row.modelData.symbol
                    size: alertsModel.fontSize
                    color: row.rowColor
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.text
                    font.pixelSize: alertsModel.fontSize
                    font.weight: Font.DemiBold
                    color: row.rowColor
                    Accessible.ignored: true
                }
            }
        }
    }
}
