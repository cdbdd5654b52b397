import QtQuick
import Ostrel.Components
import Ostrel.QLab

// A running Timecode cue's timecode, large, with its rate and output beneath.
Column {
    id: root

    required property QLabClient qlab
    required property QLabSettings settings
    // The main screen's station, whose fallback rate rules.
    property AppModel station: null
    property real scale: 1
    // The value shrinks to this width rather than push the screen wider.
    property real maximumWidth: Number.POSITIVE_INFINITY
    readonly property TimecodeModel timecode: timecodeModel
    readonly property bool isShown: timecodeModel.isShown

    spacing: 6 * scale

    TimecodeModel {
        id: timecodeModel
        qlab: root.qlab
        settings: root.settings
        station: root.station
    }

    Text {
        anchors.right: parent.right
        text: timecodeModel.caption
        font.pixelSize: 12 * root.scale
        font.weight: Font.DemiBold
        font.letterSpacing: 1.4 * root.scale
        color: Theme.tertiary
    }
    Text {
        objectName: "timecodeValue"
        anchors.right: parent.right
        width: Math.min(implicitWidth, root.maximumWidth)
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 12
        text: timecodeModel.valueText
        font.pixelSize: 56 * root.scale
        font.weight: Font.DemiBold
        color: Theme.primary
    }
    Text {
        objectName: "timecodeDetails"
        anchors.right: parent.right
        text: timecodeModel.detailsText
        font.pixelSize: 13 * root.scale
        color: Theme.secondary
    }
}
