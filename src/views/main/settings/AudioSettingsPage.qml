import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Calibration
import Ostrel.Main

// The Audio page: the input device, its channel and its sample rate.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property AudioPageModel page: pageModel
    readonly property InputPickerModel picker: pickerModel

    contentWidth: availableWidth
    // The device list is fresh whenever the page is shown.
    onVisibleChanged: if (visible) pickerModel.refreshDevices()

    InputPickerModel {
        id: pickerModel
        audio: root.appModel.audio
        input: root.appModel.settings.input
    }
    AudioPageModel {
        id: pageModel
        audio: root.appModel.audio
        input: root.appModel.settings.input
        sessions: root.appModel.settings.sessions
    }

    ColumnLayout {
        width: root.availableWidth
        spacing: 8

        SettingsRow {
            title: "Input Device"
            ComboBox {
                objectName: "inputDevicePicker"
                Layout.preferredWidth: 220
                model: pickerModel.deviceTitles
                currentIndex: pickerModel.deviceIndex
                onActivated: index => pickerModel.deviceIndex = index
            }
        }
        SettingsRow {
            title: "Input Channel"
            ComboBox {
                objectName: "inputChannelPicker"
                Layout.preferredWidth: 220
                enabled: pickerModel.choosesChannel
                model: pickerModel.channelTitles
                currentIndex: pickerModel.channelIndex
                onActivated: index => pickerModel.channelIndex = index
            }
        }
        SettingsRow {
            title: "Sample Rate"
            visible: pageModel.offersSampleRates
            ComboBox {
                objectName: "sampleRatePicker"
                Layout.preferredWidth: 220
                model: pageModel.sampleRateOptions
                currentIndex: pageModel.sampleRateIndex
                onActivated: index => pageModel.sampleRateIndex = index
            }
        }
        SettingsFooter {
            objectName: "audioFooter"
            text: pageModel.footer
        }
    }
}
