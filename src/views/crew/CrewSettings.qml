import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Crew

// The Crew page of the settings: the role, the station's name and how its link stands; which
// primary a secondary connects to; clearing this copy of the chat.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property CrewSettingsModel page: pageModel

    contentWidth: availableWidth

    CrewSettingsModel {
        id: pageModel
        crew: root.appModel.crew
        settings: root.appModel.settings.crew
    }

    ColumnLayout {
        width: root.availableWidth
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            spacing: 12
            Label {
                Layout.fillWidth: true
                text: pageModel.roleTitle
                color: Theme.primary
            }
            ComboBox {
                objectName: "crewRolePicker"
                Layout.preferredWidth: 180
                model: pageModel.roleChoices
                currentIndex: pageModel.roleIndex
                onActivated: index => pageModel.roleIndex = index
            }
        }
        Label {
            objectName: "crewRoleSummary"
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            font.pixelSize: 12
            text: pageModel.summary
            color: Theme.secondary
        }
        RowLayout {
            Layout.fillWidth: true
            spacing: 12
            Label {
                Layout.fillWidth: true
                text: pageModel.stationNameTitle
                color: Theme.primary
            }
            TextField {
                objectName: "stationNameField"
                Layout.preferredWidth: 200
                text: pageModel.stationName
                onEditingFinished: pageModel.stationName = text
            }
        }
        RowLayout {
            Layout.fillWidth: true
            visible: pageModel.showsStatus
            spacing: 12
            Label {
                Layout.fillWidth: true
                text: pageModel.statusTitle
                color: Theme.primary
            }
            CrewStatusLabel {
                id: settingsStatus
                objectName: "crewSettingsStatus"
                crew: root.appModel.crew
            }
        }
        Label {
            objectName: "crewSettingsProblem"
            Layout.fillWidth: true
            visible: pageModel.showsStatus && settingsStatus.status.problem !== ""
            text: settingsStatus.status.problem
            wrapMode: Text.WordWrap
            color: Theme.colors[settingsStatus.status.problemColorRole]
        }

        Label {
            Layout.topMargin: 10
            visible: pageModel.showsPrimarySection
            text: pageModel.primarySectionTitle
            font.pixelSize: 13
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        RowLayout {
            Layout.fillWidth: true
            visible: pageModel.showsPrimarySection
            spacing: 12
            Label {
                Layout.fillWidth: true
                text: pageModel.connectToTitle
                color: Theme.primary
            }
            ComboBox {
                objectName: "crewPrimaryPicker"
                Layout.preferredWidth: 200
                model: pageModel.primaryChoices
                currentIndex: pageModel.primaryIndex
                onActivated: index => pageModel.primaryIndex = index
            }
        }

        Label {
            Layout.topMargin: 10
            visible: pageModel.showsMessagesSection
            text: pageModel.messagesSectionTitle
            font.pixelSize: 13
            font.weight: Font.DemiBold
            color: Theme.secondary
        }
        Button {
            objectName: "clearChatButton"
            visible: pageModel.showsMessagesSection
            text: pageModel.clearTitle
            onClicked: pageModel.clearChat()
        }
        Label {
            Layout.fillWidth: true
            visible: pageModel.showsMessagesSection
            wrapMode: Text.WordWrap
            font.pixelSize: 12
            text: pageModel.clearFooter
            color: Theme.secondary
        }
    }
}
