#pragma once

// Draws the bars and peak holds of a spectrum chart as scene-graph rectangles, one node per
// rectangle, updated in place: nothing is painted pixel by pixel ten times a second.
#include <QColor>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include "views/spectrum/SpectrumChartModel.h"

namespace ostrel {

class SpectrumBarsItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::SpectrumChartModel* chart READ chart WRITE setChart NOTIFY chartChanged)
    Q_PROPERTY(QColor barColor READ barColor WRITE setBarColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor peakColor READ peakColor WRITE setPeakColor NOTIFY colorsChanged)

public:
    explicit SpectrumBarsItem(QQuickItem* parent = nullptr);

    SpectrumChartModel* chart() const { return chart_.data(); }
    void setChart(SpectrumChartModel* value);
    QColor barColor() const { return barColor_; }
    void setBarColor(const QColor& value);
    QColor peakColor() const { return peakColor_; }
    void setPeakColor(const QColor& value);

signals:
    void chartChanged();
    void colorsChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    QPointer<SpectrumChartModel> chart_;
    QMetaObject::Connection geometryConnection_;
    QColor barColor_ = Qt::blue;
    QColor peakColor_ = Qt::gray;
};

} // namespace ostrel
