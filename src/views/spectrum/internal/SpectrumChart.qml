import QtQuick
import QtQuick.Shapes
import Ostrel.Components
import Ostrel.Spectrum

// Bars with peak holds, or an area under a level line with a peak line, on a logarithmic
// frequency axis; the level axis at the trailing edge; the band under the pointer read out.
Item {
    id: root

    property MeterModel meter
    required property DisplaySettings display
    readonly property SpectrumChartModel chart: chartModel

    Accessible.role: Accessible.Chart
    Accessible.name: chartModel.accessibleName
    Accessible.description: chartModel.accessibleValue

    SpectrumChartModel {
        id: chartModel
        meter: root.meter
        display: root.display
        plotWidth: plot.width
        plotHeight: plot.height
    }
    TextMetrics {
        id: labelMetrics
        font.pixelSize: 10
    }

    Item {
        id: plot
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.right: levelAxis.left
        anchors.rightMargin: 6
        anchors.bottom: frequencyAxis.top

        Repeater {
            model: chartModel.levelTicks
            Rectangle {
                required property var modelData
                y: modelData.y
                width: plot.width
                height: 0.5
                color: Theme.quaternary
            }
        }
        SpectrumBarsItem {
            objectName: "spectrumBars"
            anchors.fill: parent
            visible: chartModel.showsBars
            chart: chartModel
            barColor: Theme.accent
            peakColor: Theme.secondary
        }
        Shape {
            objectName: "spectrumLine"
            anchors.fill: parent
            visible: !chartModel.showsBars
            ShapePath {
                strokeColor: "transparent"
                fillColor: Qt.rgba(Theme.accent.r, Theme.accent.g, Theme.accent.b, 0.25)
                PathPolyline {
                    path: chartModel.area
                }
            }
            ShapePath {
                strokeColor: Theme.accent
                strokeWidth: 1.5
                fillColor: "transparent"
                PathPolyline {
                    path: chartModel.levelLine
                }
            }
            ShapePath {
                strokeColor: Theme.secondary
                strokeWidth: 1
                fillColor: "transparent"
                PathPolyline {
                    path: chartModel.peakLine
                }
            }
        }
        Rectangle {
            visible: chartModel.hasCursor
            x: chartModel.cursorRect.x
            width: chartModel.cursorRect.width
            height: plot.height
            color: Qt.rgba(Theme.primary.r, Theme.primary.g, Theme.primary.b, 0.12)
        }
        Text {
            objectName: "spectrumCursor"
            visible: chartModel.hasCursor
            x: Math.max(0, Math.min(chartModel.cursorRect.x, plot.width - width))
            text: chartModel.cursorText
            font: labelMetrics.font
            color: Theme.primary
        }
        Text {
            objectName: "spectrumWaiting"
            anchors.centerIn: parent
            visible: !chartModel.hasData
            text: chartModel.waitingText
            font.pixelSize: 12
            color: Theme.tertiary
        }
        HoverHandler {
            id: hover
            onPointChanged: chartModel.hover(point.position.x)
            onHoveredChanged: if (!hovered) chartModel.clearHover()
        }
    }

    Item {
        id: levelAxis
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: plot.bottom
        width: 22
        Repeater {
            model: chartModel.levelTicks
            Text {
                required property var modelData
                y: modelData.y
                height: 0
                verticalAlignment: Text.AlignVCenter
                text: modelData.text
                font: labelMetrics.font
                color: Theme.tertiary
            }
        }
    }
    Item {
        id: frequencyAxis
        anchors.left: parent.left
        anchors.right: plot.right
        anchors.bottom: parent.bottom
        height: labelMetrics.height + 2
        Repeater {
            model: chartModel.frequencyTicks
            Text {
                required property var modelData
                x: modelData.x - width / 2
                visible: x >= 0 && x + width <= frequencyAxis.width
                text: modelData.text
                font: labelMetrics.font
                color: Theme.tertiary
            }
        }
    }
}
