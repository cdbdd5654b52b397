import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Dante

// The Dante panel of the main screen's side column. Clicking it opens the Dante Devices window.
Item {
    id: root

    required property DanteMonitor dante
    property real scale: 1
    readonly property DanteWidgetModel widget: widgetModel
    signal devicesRequested

    implicitWidth: Math.min(column.implicitWidth + 2 * widgetModel.padding, widgetModel.maximumWidth)
    implicitHeight: column.implicitHeight + 2 * widgetModel.padding

    DanteWidgetModel {
        id: widgetModel
        dante: root.dante
        scale: root.scale
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: widgetModel.padding
        spacing: 0

        Caption {
            text: widgetModel.heading
            fontSize: widgetModel.headingSize
            tracking: widgetModel.headingTracking
            Layout.bottomMargin: widgetModel.headingPadding
        }
        Text {
            objectName: "danteCount"
            text: widgetModel.countText
            font.pixelSize: widgetModel.countSize
            font.weight: Font.DemiBold
            color: Theme.colors[widgetModel.countColorRole]
            Accessible.ignored: true
        }
        Text {
            objectName: "danteDetail"
            text: widgetModel.detailText
            font.pixelSize: widgetModel.detailSize
            color: Theme.colors[widgetModel.countColorRole]
            Accessible.ignored: true
        }
        Flow {
            objectName: "danteDeviceGrid"
            Layout.preferredWidth: widgetModel.gridWidth
            Layout.topMargin: widgetModel.gridSpacing
            spacing: widgetModel.gridSpacing
            Repeater {
                model: widgetModel.listed
                Row {
                    required property var modelData
                    width: widgetModel.gridItemWidth
                    spacing: widgetModel.gridSpacing
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: widgetModel.nameSize * 0.5
                        height: width
                        radius: width / 2
                        color: Theme.colors[modelData.colorRole]
                    }
                    Text {
                        width: widgetModel.gridItemWidth - widgetModel.nameSize
                        text: modelData.name
                        elide: Text.ElideRight
                        font.pixelSize: widgetModel.nameSize
                        color: Theme.colors[modelData.textColorRole]
                    }
                }
            }
        }
        Text {
            visible: widgetModel.showsMore
            text: widgetModel.moreText
            font.pixelSize: widgetModel.moreSize
            color: Theme.tertiary
        }
    }

    Accessible.role: Accessible.Button
    Accessible.name: widgetModel.accessibleName
    Accessible.onPressAction: root.devicesRequested()

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: root.devicesRequested()
    }
    ToolTip.text: widgetModel.helpText
    ToolTip.visible: mouse.containsMouse
    ToolTip.delay: 500
}
