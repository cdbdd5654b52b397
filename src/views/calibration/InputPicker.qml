import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Calibration

// Which input to measure: "System Default" or a device, and one of its channels.
GridLayout {
    id: root

    required property AudioInput audio
    required property InputSettings input
    readonly property InputPickerModel picker: pickerModel

    columns: 2
    columnSpacing: 10
    rowSpacing: 8

    InputPickerModel {
        id: pickerModel
        audio: root.audio
        input: root.input
    }
    Component.onCompleted: pickerModel.refreshDevices()

    Label {
        text: pickerModel.inputTitle
        color: Theme.primary
    }
    ComboBox {
        objectName: "inputDevice"
        Layout.fillWidth: true
        model: pickerModel.deviceTitles
        currentIndex: pickerModel.deviceIndex
        Accessible.name: pickerModel.inputTitle
        onActivated: index => pickerModel.deviceIndex = index
    }
    Label {
        text: pickerModel.channelTitle
        color: Theme.primary
    }
    ComboBox {
        objectName: "inputChannel"
        Layout.fillWidth: true
        enabled: pickerModel.choosesChannel
        model: pickerModel.channelTitles
        currentIndex: pickerModel.channelIndex
        Accessible.name: pickerModel.channelTitle
        onActivated: index => pickerModel.channelIndex = index
    }
}
