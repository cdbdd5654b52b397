import QtQuick
import QtQuick.Layouts
import Ostrel.Calibration
import Ostrel.Components
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
        anchors.fill: parent
        appModel: root.appModel
        onCalibrationRequested: calibrationAssistant.present()
        onInputPickerRequested: inputPicker.open()
        onDanteDevicesRequested: root.danteDevicesRequested()
    }

    DropoutFlashOverlay {
        objectName: "dropoutFlash"
        anchors.fill: parent
        dante: root.appModel.dante
        settings: root.appModel.settings.dante
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
        objectName: "toolbar"
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.rightMargin: monitor.trailingCornerWidth + 12
        spacing: 0

        BrightnessSlider {
            brightness: brightnessModel
            showsSymbols: monitor.layout.showsToolbarSymbols
        }
        SessionToolbarButton {
            appModel: root.appModel
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
        sequence: StandardKey.Quit
        onActivated: Qt.quit()
    }

    Component.onCompleted: contentModel.start()
}
