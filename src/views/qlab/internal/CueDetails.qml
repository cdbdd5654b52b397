import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.QLab

// The first running cue: number, name, timing, and what else plays.
ColumnLayout {
    id: root

    required property CurrentCueModel cue
    property bool showMode: false
    property real scale: 1

    spacing: showMode ? 6 * scale : 5

    // Regular form: the number beside the name.
    RowLayout {
        Layout.fillWidth: true
        visible: !root.showMode
        spacing: 10
        Text {
            objectName: "cueNumber"
            visible: root.cue.number.length > 0
            text: root.cue.number
            font.pixelSize: 22
            color: Theme.secondary
        }
        Text {
            objectName: "cueName"
            Layout.fillWidth: true
            text: root.cue.name
            font.pixelSize: 22
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            maximumLineCount: 1
            color: Theme.primary
        }
    }
    // Show-mode form: the number large above the name.
    Text {
        objectName: "showCueNumber"
        Layout.fillWidth: true
        visible: root.showMode && root.cue.number.length > 0
        horizontalAlignment: Text.AlignHCenter
        text: root.cue.number
        font.pixelSize: 56 * root.scale
        font.weight: Font.DemiBold
        color: Theme.secondary
    }
    Text {
        objectName: "showCueName"
        Layout.fillWidth: true
        visible: root.showMode
        horizontalAlignment: Text.AlignHCenter
        text: root.cue.name
        font.pixelSize: 34 * root.scale
        font.weight: Font.DemiBold
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 34 * root.scale * 0.6
        elide: Text.ElideRight
        maximumLineCount: 1
        color: Theme.primary
    }
    CueTiming {
        Layout.fillWidth: true
        cue: root.cue
        centred: root.showMode
        fontSize: root.showMode ? 17 * root.scale : 15
    }
    Text {
        objectName: "otherCues"
        Layout.fillWidth: true
        visible: root.cue.hasOthers
        horizontalAlignment: root.showMode ? Text.AlignHCenter : Text.AlignLeft
        text: root.showMode ? root.cue.othersCountText : root.cue.othersText
        font.pixelSize: root.showMode ? 14 * root.scale : 12
        wrapMode: Text.WordWrap
        color: Theme.tertiary
    }
}
