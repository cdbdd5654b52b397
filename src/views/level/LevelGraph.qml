import QtQuick
import QtQuick.Shapes
import Ostrel.Components
import Ostrel.Level

// The level over the last seconds as a line, the y axis at the trailing edge, cue markers as
// vertical rules with their labels.
Item {
    id: root

    required property MeterModel meter
    property real lineWidth: 2
    readonly property LevelGraphModel graph: graphModel

    Accessible.role: Accessible.Chart
    Accessible.name: graphModel.accessibleName

    LevelGraphModel {
        id: graphModel
        meter: root.meter
        plotWidth: plot.width
        plotHeight: plot.height
        markerFont: captionMetrics.font
    }
    TextMetrics {
        id: captionMetrics
        font.pixelSize: 10
    }

    Item {
        id: plot
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: axis.left
        anchors.rightMargin: 6

        Repeater {
            model: graphModel.ticks
            Rectangle {
                required property var modelData
                y: modelData.y
                width: plot.width
                height: 0.5
                color: Theme.quaternary
            }
        }
        Repeater {
            model: graphModel.markers
            Item {
                id: marker
                required property var modelData
                Rectangle {
                    x: marker.modelData.x
                    width: 1
                    height: plot.height
                    color: Theme.secondary
                }
                Text {
                    x: marker.modelData.labelX
                    text: marker.modelData.label
                    font: captionMetrics.font
                    color: Theme.tertiary
                }
            }
        }
        Shape {
            objectName: "levelLine"
            anchors.fill: parent
            ShapePath {
                strokeColor: Theme.accent
                strokeWidth: root.lineWidth
                fillColor: "transparent"
                capStyle: ShapePath.RoundCap
                joinStyle: ShapePath.RoundJoin
                PathPolyline {
                    path: graphModel.linePoints
                }
            }
        }
        Rectangle {
            visible: graphModel.hasNewestPoint
            x: graphModel.newestDot.x
            y: graphModel.newestDot.y
            width: graphModel.newestDot.width
            height: graphModel.newestDot.height
            radius: graphModel.newestDot.width
            color: Theme.accent
        }
    }

    Item {
        id: axis
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: 22

        Repeater {
            model: graphModel.ticks
            Text {
                required property var modelData
                y: modelData.y
                height: 0
                verticalAlignment: Text.AlignVCenter
                text: modelData.text
                font: captionMetrics.font
                color: Theme.tertiary
            }
        }
    }
}
