import QtQuick
import QtQuick.Shapes

// The station's mark: a level meter's arc with its needle, as on the application icon.
Item {
    id: root

    implicitWidth: 180
    implicitHeight: 180

    Rectangle {
        anchors.fill: parent
        anchors.margins: parent.width / 16
        radius: width * 0.21
        color: "#15171c"
    }
    // Drawn at the icon's own 128 units and scaled as a whole, so the smoothing layer holds it all.
    Shape {
        width: 128
        height: 128
        scale: root.width / 128
        transformOrigin: Item.TopLeft
        layer.enabled: true
        layer.samples: 4
        layer.textureSize: Qt.size(root.width * 2, root.height * 2)
        ShapePath {
            strokeColor: "#2b8cff"
            strokeWidth: 10
            fillColor: "transparent"
            capStyle: ShapePath.RoundCap
            startX: 28; startY: 84
            PathArc { x: 100; y: 84; radiusX: 38; radiusY: 38 }
        }
        ShapePath {
            strokeColor: "#ff9f0a"
            strokeWidth: 10
            fillColor: "transparent"
            capStyle: ShapePath.RoundCap
            startX: 86; startY: 56
            PathArc { x: 100; y: 84; radiusX: 38; radiusY: 38 }
        }
        ShapePath {
            strokeColor: "#f2f2f7"
            strokeWidth: 6
            capStyle: ShapePath.RoundCap
            startX: 64; startY: 88
            PathLine { x: 86; y: 50 }
        }
    }
    Rectangle {
        x: root.width * 56 / 128
        y: root.height * 80 / 128
        width: root.width * 16 / 128
        height: width
        radius: width / 2
        color: "#f2f2f7"
    }
}
