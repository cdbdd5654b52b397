import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Ostrel.Components

// A section's heading on a settings page.
Label {
    Layout.topMargin: 6
    font.pixelSize: 13
    font.weight: Font.DemiBold
    color: Theme.secondary
}
