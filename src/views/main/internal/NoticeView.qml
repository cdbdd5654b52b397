import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// Stands in for the readout while the input can't measure: why, and the one thing to do.
ColumnLayout {
    id: root

    required property LiveInput input
    required property int mode
    readonly property AudioNoticeModel notice: noticeModel

    signal inputPickerRequested()

    visible: noticeModel.hasNotice
    spacing: 14
    Layout.topMargin: 24
    Layout.bottomMargin: 24

    AudioNoticeModel {
        id: noticeModel
        input: root.input
        mode: root.mode
        onInputPickerRequested: root.inputPickerRequested()
    }

    SymbolIcon {
        Layout.alignment: Qt.AlignHCenter
        name: noticeModel.symbol
        size: 34
        font.weight: Font.Light
        color: Theme.secondary
    }
    Text {
        objectName: "noticeMessage"
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        text: noticeModel.message
        font.pixelSize: 20
        color: Theme.secondary
    }
    Button {
        objectName: "noticeAction"
        Layout.alignment: Qt.AlignHCenter
        visible: noticeModel.showsAction
        flat: noticeModel.actionIsLink
        text: noticeModel.actionTitle
        onClicked: noticeModel.perform()
    }
}
