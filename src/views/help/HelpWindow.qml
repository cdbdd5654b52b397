import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Help

// "Ostrel Live Help": the manual in a window of its own, which needs no model.
Window {
    id: root

    readonly property alias view: helpView

    title: "Ostrel Live Help"
    width: 560
    height: 640
    minimumWidth: 360
    minimumHeight: 320
    color: Theme.background

    HelpView {
        id: helpView
        anchors.fill: parent
    }
}
