import QtQuick
import QtQuick.Layouts
import Ostrel.Components
import Ostrel.Level

// Peak, Leq and Max across the bottom, spread apart.
RowLayout {
    id: root

    required property MeterModel meter
    property real fontSize: 14
    readonly property StatisticsFooterModel footer: footerModel

    spacing: 0

    StatisticsFooterModel {
        id: footerModel
        meter: root.meter
        fontSize: root.fontSize
    }

    Statistic {
        objectName: "peakStatistic"
        caption: footerModel.peakCaption
        value: footerModel.peakText
        fontSize: footerModel.fontSize
        spacing: footerModel.captionSpacing
    }
    Item { Layout.fillWidth: true }
    Statistic {
        objectName: "leqStatistic"
        caption: footerModel.leqCaption
        value: footerModel.leqText
        fontSize: footerModel.fontSize
        spacing: footerModel.captionSpacing
    }
    Item { Layout.fillWidth: true }
    Statistic {
        objectName: "maxStatistic"
        caption: footerModel.maxCaption
        value: footerModel.maxText
        fontSize: footerModel.fontSize
        spacing: footerModel.captionSpacing
    }
}
