import QtQuick
import QtQuick.Layouts
import Ostrel.Calibration
import Ostrel.Components
import Ostrel.Crew
import Ostrel.Main
import Ostrel.Sessions
import Ostrel.Dante

// Everything inside the main window: the monitor, the dimming over it, the toolbar over both, the
// alert and the keyboard commands.
Item {
    id: root

    required property AppModel appModel
    readonly property ContentModel content: contentModel
    readonly property BrightnessOverlay brightness: brightnessModel
    readonly property CrewFrameModel crew: crewFrame
    signal danteDevicesRequested

    palette.window: Theme.background
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.highlight: Theme.accent

    ContentModel {
        id: contentModel
        appModel: root.appModel
    }
    BrightnessOverlay {
        id: brightnessModel
        display: root.appModel.settings.display
    }
    CrewFrameModel {
        id: crewFrame
        appModel: root.appModel
    }
    Binding {
        target: Theme
        property: "dark"
        value: contentModel.isDark
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }

    // The readings take the whole window: the toolbar floats over them.
    MonitorView {
        id: monitor
        objectName: "monitorView"
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: chatColumn.visible ? chatColumn.left : parent.right
        appModel: root.appModel
        // A secondary cut off from its primary can't be taken for a live one.
        opacity: crewFrame.monitorOpacity
        Behavior on opacity {
            NumberAnimation { duration: crewFrame.fadeDuration; easing.type: Easing.InOutQuad }
        }
        onCalibrationRequested: calibrationAssistant.present()
        onInputPickerRequested: inputPicker.open()
        onDanteDevicesRequested: root.danteDevicesRequested()
    }

    // Over the monitor's column, at the top, below the toolbar and the corners' status lines.
    ColumnLayout {
        objectName: "crewBanners"
        anchors.top: toolbar.bottom
        anchors.horizontalCenter: monitor.horizontalCenter
        anchors.topMargin: 12
        width: Math.min(720, monitor.width - 48)
        spacing: 12

        LostConnectionBanner {
            id: lostConnection
            objectName: "lostConnectionBanner"
            Layout.alignment: Qt.AlignHCenter
            Layout.maximumWidth: 560
            crew: root.appModel.crew
            settings: root.appModel.settings.crew
            textScale: monitor.layout.bannerScale
            visible: opacity > 0
            opacity: crewFrame.isLive ? 0 : 1
            Behavior on opacity {
                NumberAnimation { duration: crewFrame.fadeDuration; easing.type: Easing.InOutQuad }
            }
        }
        UrgentMessageBanners {
            objectName: "urgentBanners"
            Layout.fillWidth: true
            crew: root.appModel.crew
            textScale: monitor.layout.urgentBannerScale
        }
    }

    // The crew's chat at the trailing edge, while it is asked for and the station is in a crew.
    CrewChatPanel {
        id: chatColumn
        objectName: "chatColumn"
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        width: crewFrame.chatWidth(root.width)
        visible: crewFrame.presentsChat
        crew: root.appModel.crew
        micNames: root.appModel.micNames
        cueLabel: root.appModel.currentCueLabel

        Rectangle {
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            width: 1
            color: Theme.quaternary
        }
    }

    DropoutFlashOverlay {
        objectName: "dropoutFlash"
        anchors.fill: parent
        dante: root.appModel.dante
        settings: root.appModel.settings.dante
        urgentFlashCount: root.appModel.crew.urgentFlashCount
    }

    // Dims what is read, not the control that brightens it: in a dark room at the lowest setting
    // the slider must still be found.
    Rectangle {
        objectName: "dimming"
        anchors.fill: parent
        color: "black"
        opacity: brightnessModel.overlayOpacity
        Accessible.ignored: true
    }

    // No background of its own, so the readings run to the top of the window. Its items stand at
    // the trailing side, just left of the QLab status in the top right corner.
    RowLayout {
        id: toolbar
        objectName: "toolbar"
        anchors.top: parent.top
        anchors.right: monitor.right
        anchors.rightMargin: monitor.trailingCornerWidth + 12
        spacing: 0

        BrightnessSlider {
            brightness: brightnessModel
            showsSymbols: monitor.layout.showsToolbarSymbols
        }
        CrewChatToolbarButton {
            crew: root.appModel.crew
            showsChat: crewFrame.showsChat
            onToggleRequested: crewFrame.toggleChat()
        }
        SessionToolbarButton {
            appModel: root.appModel
            visible: crewFrame.showsSessionButton
        }
    }

    ErrorAlert {
        content: contentModel
    }
    CalibrationAssistant {
        id: calibrationAssistant
        appModel: root.appModel
    }
    InputPickerSheet {
        id: inputPicker
        appModel: root.appModel
    }

    Shortcut {
        sequence: brightnessModel.brighterSequence
        enabled: brightnessModel.canBrighten
        onActivated: brightnessModel.brighter()
    }
    Shortcut {
        sequence: brightnessModel.dimmerSequence
        enabled: brightnessModel.canDim
        onActivated: brightnessModel.dimmer()
    }
    Shortcut {
        sequence: contentModel.resetStatisticsShortcut
        onActivated: contentModel.resetStatistics()
    }
    Shortcut {
        sequence: crewFrame.chatShortcut
        enabled: crewFrame.showsChatButton
        onActivated: crewFrame.toggleChat()
    }
    Shortcut {
        sequence: StandardKey.Quit
        onActivated: Qt.quit()
    }

    Component.onCompleted: contentModel.start()
}
