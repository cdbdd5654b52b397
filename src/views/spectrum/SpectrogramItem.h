#pragma once

// Draws the meter's spectrogram as one texture: a bitmap laid out like the ring, into which each
// new spectrum paints one column, shown in two pieces so that the newest column stands at the
// right edge. The whole bitmap is repainted only when the level range or the colour scheme moves.
#include <optional>

#include <QImage>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include "common/Date.h"
#include "model/MeterModel.h"
#include "views/spectrum/SpectrogramImage.h"

namespace ostrel {

class SpectrogramItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY darkChanged)

public:
    explicit SpectrogramItem(QQuickItem* parent = nullptr);

    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value);
    bool dark() const { return dark_; }
    void setDark(bool value);

    // What the bitmap holds, for tests: the ring's layout, one pixel per column and band.
    const QImage& image() const { return image_; }
    SpectrogramImage::Range shownRange() const { return range_; }
    // Columns painted since the last full repaint, and full repaints, for tests.
    int paintedColumns() const { return paintedColumns_; }
    int fullRepaints() const { return fullRepaints_; }

signals:
    void meterChanged();
    void darkChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void sync();
    void repaintAll();

    QPointer<MeterModel> meter_;
    std::vector<QMetaObject::Connection> connections_;
    bool dark_ = false;
    QImage image_;
    bool imageChanged_ = false;
    SpectrogramImage::Range range_;
    bool paintedDark_ = false;
    std::optional<Date> newestPainted_;
    std::int64_t paintedCount_ = 0;
    int paintedColumns_ = 0;
    int fullRepaints_ = 0;
};

} // namespace ostrel
