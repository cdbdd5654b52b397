import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// The QLab page: the connection, the timecode frame rate, the Dante watch and the advanced
// workspace and passcode.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property QLabPageModel page: pageModel
    property bool showsAdvanced: false

    contentWidth: availableWidth

    QLabPageModel {
        id: pageModel
        settings: root.appModel.settings.qlab
        qlab: root.appModel.qlab
    }

    ColumnLayout {
        width: root.availableWidth
        spacing: 8

        Switch {
            objectName: "monitorQLabSwitch"
            Layout.fillWidth: true
            text: "Monitor QLab"
            checked: pageModel.monitors
            onToggled: pageModel.monitors = checked
        }
        SettingsRow {
            title: "Host"
            TextField {
                objectName: "hostField"
                Layout.preferredWidth: 200
                enabled: pageModel.monitors
                placeholderText: "localhost"
                text: pageModel.host
                onEditingFinished: pageModel.host = text
            }
        }
        SettingsRow {
            title: "Port"
            TextField {
                objectName: "portField"
                Layout.preferredWidth: 90
                enabled: pageModel.monitors
                inputMethodHints: Qt.ImhDigitsOnly
                validator: IntValidator {}
                text: pageModel.port
                onEditingFinished: pageModel.port = text
            }
        }
        SettingsRow {
            title: "Status"
            Label {
                objectName: "qlabStatusText"
                text: pageModel.statusText
                color: Theme.secondary
            }
            Button {
                objectName: "reconnectButton"
                visible: pageModel.showsReconnect
                text: "Reconnect"
                onClicked: pageModel.reconnect()
            }
        }
        SettingsFooter {
            text: "Ostrel Live uses QLab 5's OSC interface. Cue start and stop events need QLab 5.3 or later."
        }

        SettingsRow {
            title: "Timecode Frame Rate"
            ComboBox {
                objectName: "timecodeRatePicker"
                Layout.preferredWidth: 160
                model: pageModel.rateOptions
                currentIndex: pageModel.rateIndex
                onActivated: index => pageModel.rateIndex = index
            }
        }
        SettingsFooter {
            text: "QLab 5.4 doesn't share a Timecode cue's frame rate, so set it to match your cue. Ostrel Live reads the start time from the cue's name, so leave Timecode cues unnamed."
        }

        SettingsHeader {
            text: "Dante"
        }
        Switch {
            objectName: "watchDanteSwitch"
            Layout.fillWidth: true
            text: "Watch for Dante devices"
            checked: root.appModel.settings.dante.monitoringEnabled
            onToggled: root.appModel.settings.dante.monitoringEnabled = checked
        }
        Switch {
            objectName: "danteFlashSwitch"
            Layout.fillWidth: true
            text: "Flash the screen red when a device drops out"
            checked: root.appModel.settings.dante.dropoutFlash
            onToggled: root.appModel.settings.dante.dropoutFlash = checked
        }
        SettingsFooter {
            text: "Lists the Dante devices on this computer's network and warns you if one drops out. Ostrel Live only listens; it never changes Dante routing."
        }

        Button {
            objectName: "qlabAdvancedDisclosure"
            flat: true
            text: (root.showsAdvanced ? "\u25BE " : "\u25B8 ") + "Advanced"
            onClicked: root.showsAdvanced = !root.showsAdvanced
        }
        SettingsRow {
            visible: root.showsAdvanced
            title: "Workspace"
            TextField {
                objectName: "workspaceField"
                Layout.preferredWidth: 200
                placeholderText: "First open workspace"
                text: pageModel.workspace
                onEditingFinished: pageModel.workspace = text
            }
        }
        SettingsRow {
            visible: root.showsAdvanced
            title: "Passcode"
            TextField {
                objectName: "passcodeField"
                Layout.preferredWidth: 200
                echoMode: TextInput.Password
                placeholderText: "None"
                text: pageModel.passcode
                onEditingFinished: pageModel.passcode = text
            }
        }
    }
}
