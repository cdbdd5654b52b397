import QtQuick
import Ostrel.Components
import Ostrel.Spectrum

// The spectrum over the graph's span, as a picture: time along x, low frequencies at the bottom.
Item {
    id: root

    property MeterModel meter
    readonly property SpectrogramModel spectrogram: spectrogramModel

    Accessible.role: Accessible.Graphic
    Accessible.name: spectrogramModel.accessibleName

    SpectrogramModel {
        id: spectrogramModel
        meter: root.meter
        plotWidth: picture.width
        plotHeight: picture.height
    }
    TextMetrics {
        id: labelMetrics
        font.pixelSize: 10
    }

    SpectrogramItem {
        id: picture
        objectName: "spectrogramPicture"
        anchors.fill: parent
        meter: root.meter
        dark: Theme.dark
    }
    // The frequency grid, by the fine bands' own positions.
    Repeater {
        model: spectrogramModel.gridLines
        Item {
            required property var modelData
            y: modelData.y
            width: root.width
            Rectangle {
                width: parent.width
                height: 0.5
                color: Theme.quaternary
            }
            Text {
                anchors.right: parent.right
                anchors.bottom: parent.top
                text: parent.modelData.text
                font: labelMetrics.font
                color: Theme.tertiary
            }
        }
    }
    Text {
        objectName: "spectrogramWaiting"
        anchors.centerIn: parent
        visible: spectrogramModel.isEmpty
        text: spectrogramModel.waitingText
        font.pixelSize: 12
        color: Theme.tertiary
    }
    Rectangle {
        visible: spectrogramModel.hasCursor
        x: spectrogramModel.cursorPosition.x
        y: spectrogramModel.cursorPosition.y
        width: cursorText.width + 8
        height: cursorText.height + 4
        radius: 3
        color: Qt.rgba(Theme.surface.r, Theme.surface.g, Theme.surface.b, 0.9)
        Text {
            id: cursorText
            anchors.centerIn: parent
            text: spectrogramModel.cursorText
            font: labelMetrics.font
            color: Theme.primary
        }
    }
    HoverHandler {
        onPointChanged: spectrogramModel.hover(point.position.x, point.position.y,
                                               cursorText.width + 8, cursorText.height + 4)
        onHoveredChanged: if (!hovered) spectrogramModel.clearHover()
    }
}
