#pragma once

// The loaded microphone's response relative to 1 kHz, drawn as scene-graph geometry over a
// logarithmic frequency axis from 20 Hz to 20 kHz and a level axis from -20 to +20 dB, with a
// flat rule at 0 dB. The axis labels are left to QML, at the places this item gives.
#include <QColor>
#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QSizeF>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <vector>

#include "measurement/MeasurementSettings.h"

class QSGGeometry;

namespace ostrel {

class ResponseChart : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeasurementSettings* measurement READ measurement WRITE setMeasurement NOTIFY
            measurementChanged)
    Q_PROPERTY(QColor curveColor READ curveColor WRITE setCurveColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor ruleColor READ ruleColor WRITE setRuleColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor gridColor READ gridColor WRITE setGridColor NOTIFY colorsChanged)
    Q_PROPERTY(bool hasCurve READ hasCurve NOTIFY curveChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName CONSTANT)
    Q_PROPERTY(QString accessibleValue READ accessibleValue NOTIFY curveChanged)
    Q_PROPERTY(QString ruleName READ ruleName CONSTANT)
    Q_PROPERTY(double flatY READ flatY NOTIFY layoutChanged)
    Q_PROPERTY(QVariantList frequencyTicks READ frequencyTicks NOTIFY layoutChanged)
    Q_PROPERTY(QVariantList levelTicks READ levelTicks NOTIFY layoutChanged)

public:
    static constexpr double lowestFrequency = 20.0;
    static constexpr double highestFrequency = 20000.0;
    static constexpr double levelSpan = 20.0; // dB either side of flat
    static constexpr float lineWidth = 2.0f;

    explicit ResponseChart(QQuickItem* parent = nullptr);

    MeasurementSettings* measurement() const { return measurement_.data(); }
    void setMeasurement(MeasurementSettings* value);
    QColor curveColor() const { return curveColor_; }
    void setCurveColor(const QColor& value);
    QColor ruleColor() const { return ruleColor_; }
    void setRuleColor(const QColor& value);
    QColor gridColor() const { return gridColor_; }
    void setGridColor(const QColor& value);

    bool hasCurve() const { return measurement_ && measurement_->microphoneCorrection(); }
    static QString accessibleName();
    // "-1.5 dB at 50 hertz, 3.0 dB at 10 kilohertz".
    static QString accessibleValue(const MicrophoneCorrection& correction);
    QString accessibleValue() const;
    static QString ruleName();
    double flatY() const { return yFor(0.0, height()); }
    // {x, text} per frequency mark, {y, text} per level mark, in the item's coordinates.
    QVariantList frequencyTicks() const;
    QVariantList levelTicks() const;

    static double xFor(double frequency, double width);
    static double yFor(double level, double height);
    // The curve sampled about every two pixels across `size`, clamped to the chart.
    static std::vector<QPointF> curvePoints(const MicrophoneCorrection& correction, QSizeF size);
    // A triangle strip `width` wide along `points`, two vertices per point.
    static void fillStrip(QSGGeometry& geometry, const std::vector<QPointF>& points, float width);

signals:
    void measurementChanged();
    void colorsChanged();
    void curveChanged();
    void layoutChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    QPointer<MeasurementSettings> measurement_;
    QMetaObject::Connection correctionConnection_;
    QColor curveColor_ = Qt::blue;
    QColor ruleColor_ = Qt::gray;
    QColor gridColor_ = Qt::lightGray;
};

} // namespace ostrel
