import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Help

// The program's only manual: short sections in one scrolling column, read in a hurry.
ScrollView {
    id: root

    readonly property var sections: HelpSections.sections

    contentWidth: availableWidth
    clip: true

    ColumnLayout {
        id: column
        width: Math.min(root.availableWidth, 620)
        x: 0
        spacing: 16

        Item { Layout.preferredHeight: 8 }
        OstrelLogo {
            Layout.alignment: Qt.AlignHCenter
            Layout.preferredWidth: 180
            Layout.preferredHeight: 180
            Accessible.role: Accessible.Graphic
            Accessible.name: "Ostrel Live"
        }
        Text {
            Layout.alignment: Qt.AlignHCenter
            text: "Ostrel Live"
            color: Theme.primary
            font.pixelSize: 24
            font.weight: Font.Bold
        }
        Rectangle {
            Layout.fillWidth: true
            Layout.leftMargin: 20
            Layout.rightMargin: 20
            implicitHeight: 1
            color: Theme.quaternary
        }
        Repeater {
            model: root.sections
            delegate: ColumnLayout {
                id: entry
                required property var modelData
                required property int index
                Layout.fillWidth: true
                Layout.leftMargin: 20
                Layout.rightMargin: 20
                spacing: 16
                // A divider before the last section.
                Rectangle {
                    visible: entry.index === root.sections.length - 1
                    Layout.fillWidth: true
                    implicitHeight: 1
                    color: Theme.quaternary
                }
                HelpSection {
                    Layout.fillWidth: true
                    title: entry.modelData.title
                    text: entry.modelData.text
                }
            }
        }
        Item { Layout.preferredHeight: 12 }
    }
}
