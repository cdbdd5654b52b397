import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Level
import Ostrel.Main
import Ostrel.Mics
import Ostrel.QLab
import Ostrel.Dante
import Ostrel.Spectrum

// The readings, laid out in one column that grows with the space it gets. Places of views that
// join later (current cue, side column, mic alerts, feedback, spectrum, Dante corner) stay empty.
Item {
    id: root

    required property AppModel appModel
    readonly property MonitorLayout layout: layoutModel
    readonly property SideColumnModel sideColumn: sideModel
    signal danteDevicesRequested

    signal calibrationRequested()
    signal inputPickerRequested()

    MonitorLayout {
        id: layoutModel
        width: root.width
        height: root.height
    }
    SideColumnModel {
        id: sideModel
        qlab: root.appModel.qlab
        dante: root.appModel.dante
        showsDante: root.appModel.showsDante
    }
    MonitorModel {
        id: monitor
        audio: root.appModel.audio
        meter: root.appModel.meter
        display: root.appModel.settings.display
        mode: root.appModel.mode
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.leftMargin: layoutModel.sidePadding
        anchors.rightMargin: layoutModel.sidePadding
        anchors.topMargin: layoutModel.verticalPadding
        anchors.bottomMargin: layoutModel.verticalPadding
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            spacing: layoutModel.topRowSpacing

            ColumnLayout {
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignTop
                spacing: layoutModel.captionSpacing

                Caption {
                    objectName: "currentCueCaption"
                    text: monitor.currentCueCaption
                    fontSize: layoutModel.captionSize
                    tracking: layoutModel.captionTracking
                }
                CurrentCueView {
                    objectName: "currentCue"
                    Layout.fillWidth: true
                    qlab: root.appModel.qlab
                }
            }
            TimecodeReadout {
                objectName: "timecodeReadout"
                Layout.alignment: Qt.AlignTop
                visible: opacity > 0
                opacity: isShown ? 1 : 0
                qlab: root.appModel.qlab
                settings: root.appModel.settings.qlab
                station: root.appModel
                scale: layoutModel.scale
                maximumWidth: (root.width - 2 * layoutModel.sidePadding
                               - layoutModel.topRowSpacing) * 0.6
                Behavior on opacity {
                    NumberAnimation { duration: 800; easing.type: Easing.InOutQuad }
                }
            }
            DanteWidget {
                id: danteWidget
                objectName: "danteWidget"
                Layout.alignment: Qt.AlignTop
                dante: root.appModel.dante
                scale: layoutModel.scale
                // Fades and slides in from the trailing edge.
                visible: opacity > 0
                opacity: sideModel.showsDanteWidget ? 1 : 0
                transform: Translate {
                    x: sideModel.showsDanteWidget ? 0 : danteWidget.width / 2
                    Behavior on x {
                        NumberAnimation {
                            duration: 800
                            easing.type: Easing.InOutQuad
                        }
                    }
                }
                Behavior on opacity {
                    NumberAnimation {
                        duration: 800
                        easing.type: Easing.InOutQuad
                    }
                }
                onDevicesRequested: root.danteDevicesRequested()
            }
        }
        Item {
            objectName: "micAlertsPlace"
            Layout.fillWidth: true
            Layout.topMargin: layoutModel.micAlertsSpacing
            implicitHeight: micAlerts.visible ? micAlerts.implicitHeight : 0

            MicAlertsView {
                id: micAlerts
                objectName: "micAlerts"
                width: parent.width
                appModel: root.appModel
                textScale: layoutModel.scale
            }
        }

        Item { Layout.fillHeight: true }

        NoticeView {
            objectName: "noticeView"
            Layout.fillWidth: true
            input: root.appModel.input
            mode: root.appModel.mode
            onInputPickerRequested: root.inputPickerRequested()
        }
        ColumnLayout {
            objectName: "readoutColumn"
            Layout.alignment: Qt.AlignHCenter
            visible: monitor.showsReadout
            spacing: layoutModel.readoutSpacing

            LevelReadout {
                objectName: "levelReadout"
                Layout.alignment: Qt.AlignHCenter
                meter: root.appModel.meter
                measurement: root.appModel.settings.measurement
                display: root.appModel.settings.display
                station: root.appModel
                numberSize: layoutModel.readoutSize
                onCalibrationRequested: root.calibrationRequested()
            }
            FeedbackWarningView {
                objectName: "feedbackWarning"
                Layout.alignment: Qt.AlignHCenter
                meter: root.appModel.meter
                display: root.appModel.settings.display
                scale: layoutModel.scale
            }
            Text {
                Layout.alignment: Qt.AlignHCenter
                visible: monitor.showsNoSignalText
                text: monitor.noSignalText
                font.pixelSize: layoutModel.noSignalTextSize
                color: Theme.secondary
            }
        }

        Item { Layout.fillHeight: true }

        RowLayout {
            objectName: "graphRow"
            Layout.fillWidth: true
            Layout.preferredHeight: layoutModel.graphRowHeight
            Layout.maximumHeight: layoutModel.graphRowHeight
            visible: monitor.showsGraph
            spacing: layoutModel.graphRowSpacing

            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: layoutModel.graphRowHeight
                spacing: layoutModel.graphColumnSpacing

                Caption {
                    text: monitor.levelCaption
                    fontSize: layoutModel.smallCaptionSize
                    tracking: layoutModel.captionTracking
                }
                LevelGraph {
                    objectName: "levelGraph"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    meter: root.appModel.meter
                    lineWidth: layoutModel.graphLineWidth
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: layoutModel.graphRowHeight
                spacing: layoutModel.graphColumnSpacing

                RowLayout {
                    Layout.fillWidth: true
                    spacing: layoutModel.graphColumnSpacing

                    Caption {
                        Layout.alignment: Qt.AlignBaseline
                        text: monitor.spectrumCaption
                        fontSize: layoutModel.smallCaptionSize
                        tracking: layoutModel.captionTracking
                    }
                    SpectrumOptionsMenu {
                        objectName: "spectrumOptionsMenu"
                        Layout.alignment: Qt.AlignVCenter
                        displaySettings: root.appModel.settings.display
                        size: layoutModel.spectrumMenuSize
                    }
                    Item { Layout.fillWidth: true }
                    DominantFrequencyLabel {
                        objectName: "dominantFrequencyLabel"
                        Layout.alignment: Qt.AlignBaseline
                        meter: root.appModel.meter
                        size: layoutModel.dominantFrequencySize
                    }
                }
                SpectrumView {
                    objectName: "spectrumView"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    meter: root.appModel.meter
                    display: root.appModel.settings.display
                }
            }
        }

        StatisticsFooter {
            objectName: "statisticsFooter"
            Layout.fillWidth: true
            Layout.topMargin: layoutModel.footerSpacing
            meter: root.appModel.meter
            fontSize: layoutModel.footerFontSize
        }
    }

    // The width the top right corner's status takes from the right edge, for what stands beside it.
    readonly property real trailingCornerWidth: width - qlabStatus.x

    DanteStatusView {
        objectName: "danteStatus"
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.topMargin: layoutModel.cornerTopPadding
        anchors.leftMargin: layoutModel.cornerSidePadding
        dante: root.appModel.dante
        showsDante: root.appModel.showsDante
        isVisible: sideModel.showsDanteStatus
    }

    QLabStatusView {
        id: qlabStatus
        objectName: "qlabStatus"
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.topMargin: layoutModel.cornerTopPadding
        anchors.rightMargin: layoutModel.cornerSidePadding
        qlab: root.appModel.qlab
    }
}
