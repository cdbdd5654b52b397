import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Main

// Everything inside the main window: the toolbar, the monitor, the dimming over both, the alert
// and the keyboard commands.
Item {
    id: root

    required property AppModel appModel
    readonly property ContentModel content: contentModel
    readonly property BrightnessOverlay brightness: brightnessModel

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

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        // The toolbar has no background of its own, so the readings run up to it.
        RowLayout {
            Layout.fillWidth: true
            spacing: 0

            Item { Layout.fillWidth: true }
            BrightnessSlider {
                brightness: brightnessModel
            }
        }
        MonitorView {
            objectName: "monitorView"
            Layout.fillWidth: true
            Layout.fillHeight: true
            appModel: root.appModel
        }
    }

    Rectangle {
        objectName: "dimming"
        anchors.fill: parent
        color: "black"
        opacity: brightnessModel.overlayOpacity
        Accessible.ignored: true
    }

    ErrorAlert {
        content: contentModel
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
