import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew

// Full-width red banners over the main screen, one per urgent message this station still has to
// answer, newest three at most.
ColumnLayout {
    id: root

    required property CrewLink crew
    property real textScale: 1
    readonly property UrgentBannersModel banners: bannersModel

    spacing: 8

    UrgentBannersModel {
        id: bannersModel
        crew: root.crew
        scale: root.textScale
    }

    Repeater {
        model: bannersModel.banners

        Rectangle {
            id: banner
            required property var modelData
            objectName: "urgentBanner"
            Layout.fillWidth: true
            implicitHeight: content.implicitHeight + 24
            radius: 12
            color: Theme.colors[bannersModel.bannerColorRole]
            Accessible.role: Accessible.AlertMessage
            Accessible.name: modelData.text

            opacity: 0
            scale: 0.97
            Component.onCompleted: {
                opacity = 1
                scale = 1
            }
            Behavior on opacity { NumberAnimation { duration: 300; easing.type: Easing.OutCubic } }
            Behavior on scale { NumberAnimation { duration: 300; easing.type: Easing.OutCubic } }

            // The shadow, below and behind.
            Rectangle {
                z: -1
                anchors.fill: parent
                anchors.topMargin: 4
                anchors.bottomMargin: -4
                radius: parent.radius
                color: Qt.rgba(0, 0, 0, 0.3)
            }

            RowLayout {
                id: content
                anchors.fill: parent
                anchors.leftMargin: 18
                anchors.rightMargin: 18
                anchors.topMargin: 12
                anchors.bottomMargin: 12
                spacing: 14

                SymbolIcon {
                    visible: banner.modelData.symbol !== ""
                    name: banner.modelData.symbol
                    size: 26
                    color: "white"
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 2
                    Text {
                        Layout.fillWidth: true
                        text: banner.modelData.text
                        wrapMode: Text.WordWrap
                        font.pixelSize: 22
                        font.bold: true
                        color: "white"
                    }
                    Text {
                        Layout.fillWidth: true
                        text: banner.modelData.detail
                        wrapMode: Text.WordWrap
                        font.pixelSize: 13
                        color: "white"
                        opacity: 0.85
                    }
                }
                Button {
                    objectName: "bannerGotIt"
                    text: bannersModel.acknowledgeTitle
                    onClicked: bannersModel.acknowledge(banner.modelData.messageId)
                }
            }
        }
    }
    Text {
        objectName: "urgentOverflow"
        Layout.alignment: Qt.AlignHCenter
        visible: bannersModel.showsOverflow
        text: bannersModel.overflowText
        font.pixelSize: bannersModel.overflowSize
        font.weight: Font.DemiBold
        color: Theme.colors[bannersModel.bannerColorRole]
    }
}
