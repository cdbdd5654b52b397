import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components

// The note under a section, in the secondary style.
Label {
    Layout.fillWidth: true
    Layout.bottomMargin: 8
    wrapMode: Text.WordWrap
    font.pixelSize: 12
    color: Theme.secondary
}
