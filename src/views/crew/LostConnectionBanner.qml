import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew

// Over a secondary's greyed screen while its readings are not live: still looking for a primary,
// or cut off from the one it had.
Rectangle {
    id: root

    required property CrewLink crew
    required property CrewSettingsGroup settings
    property real textScale: 1
    readonly property LostConnectionModel lost: lostModel

    implicitWidth: Math.min(560, column.implicitWidth + 56)
    implicitHeight: column.implicitHeight + 56
    radius: 18
    color: Qt.rgba(Theme.colors[lostModel.bannerColorRole].r, Theme.colors[lostModel.bannerColorRole].g,
                   Theme.colors[lostModel.bannerColorRole].b, 0.92)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: lostModel.title
    Accessible.description: lostModel.body

    LostConnectionModel {
        id: lostModel
        crew: root.crew
        settings: root.settings
        scale: root.textScale
    }

    // The shadow, below and behind.
    Rectangle {
        z: -1
        anchors.fill: parent
        anchors.topMargin: 6
        anchors.bottomMargin: -6
        radius: parent.radius
        color: Qt.rgba(0, 0, 0, 0.35)
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 28
        spacing: 10

        SymbolIcon {
            Layout.alignment: Qt.AlignHCenter
            name: lostModel.symbol
            size: lostModel.symbolSize
            color: "white"
        }
        Text {
            objectName: "lostConnectionTitle"
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: lostModel.title
            font.pixelSize: lostModel.titleSize
            font.bold: true
            color: "white"
        }
        Text {
            Layout.fillWidth: true
            Layout.maximumWidth: 560 - 56
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            text: lostModel.body
            font.pixelSize: lostModel.bodySize
            color: "white"
            opacity: 0.9
        }
    }
}
