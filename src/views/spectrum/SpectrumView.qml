import QtQuick
import Ostrel.Components
import Ostrel.Spectrum

// The spectrum pane: the chart in bars or a line, or the spectrogram, as the settings say.
Item {
    id: root

    required property MeterModel meter
    required property DisplaySettings display

    SpectrumOptionsModel {
        id: options
        display: root.display
    }

    SpectrumChart {
        objectName: "spectrumChart"
        anchors.fill: parent
        visible: options.styleIndex !== 2
        // A hidden pane follows nothing, so it costs nothing ten times a second.
        meter: visible ? root.meter : null
        display: root.display
    }
    SpectrogramView {
        objectName: "spectrogramView"
        anchors.fill: parent
        visible: options.styleIndex === 2
        meter: visible ? root.meter : null
    }
}
