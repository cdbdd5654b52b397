import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Main

// The station's main window. The shell shows it, maximised unless the model is inert.
ApplicationWindow {
    id: window

    required property AppModel appModel

    title: mainScreen.content.title
    width: mainScreen.content.defaultWidth
    height: mainScreen.content.defaultHeight
    minimumWidth: mainScreen.content.minimumWidth
    minimumHeight: mainScreen.content.minimumHeight
    color: Theme.background
    // For what opens over the window (tool tips, the alert), which the screen's palette misses.
    palette.window: Theme.surface
    palette.windowText: Theme.primary
    palette.base: Theme.surface
    palette.text: Theme.primary
    palette.button: Theme.surface
    palette.buttonText: Theme.primary
    palette.toolTipBase: Theme.surface
    palette.toolTipText: Theme.primary
    palette.highlight: Theme.accent

    MainScreen {
        id: mainScreen
        objectName: "mainScreen"
        anchors.fill: parent
        appModel: window.appModel
    }
}
