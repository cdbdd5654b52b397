import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// The Meter page: weighting, response and the feedback warning.
ScrollView {
    id: root

    required property AppModel appModel
    readonly property MeterPageModel page: pageModel

    contentWidth: availableWidth

    MeterPageModel {
        id: pageModel
        measurement: root.appModel.settings.measurement
        display: root.appModel.settings.display
    }

    ColumnLayout {
        width: root.availableWidth
        spacing: 8

        SettingsRow {
            title: "Weighting"
            Repeater {
                model: pageModel.weightingOptions
                Button {
                    required property string modelData
                    required property int index
                    objectName: "weighting" + modelData
                    text: modelData
                    highlighted: pageModel.weightingIndex === index
                    onClicked: pageModel.weightingIndex = index
                }
            }
        }
        SettingsFooter {
            objectName: "weightingFooter"
            text: pageModel.weightingFooter
        }
        SettingsRow {
            title: "Response"
            Repeater {
                model: pageModel.responseOptions
                Button {
                    required property string modelData
                    required property int index
                    objectName: "response" + modelData
                    text: modelData
                    highlighted: pageModel.responseIndex === index
                    onClicked: pageModel.responseIndex = index
                }
            }
        }
        SettingsFooter {
            objectName: "responseFooter"
            text: pageModel.responseFooter
        }
        Switch {
            objectName: "feedbackWarningSwitch"
            Layout.fillWidth: true
            text: "Warn about possible feedback"
            checked: pageModel.feedbackWarningEnabled
            onToggled: pageModel.feedbackWarningEnabled = checked
        }
        SettingsFooter {
            text: pageModel.feedbackFooter
        }
    }
}
