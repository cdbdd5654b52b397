#pragma once

// The spectrum chart in plot coordinates: bars with their peak holds, or an area with a level
// line and a peak line, on a logarithmic frequency axis, with the axis marks and the readout of
// the band under the pointer. The view only draws what it is given.
#include <optional>
#include <vector>

#include <QList>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "measurement/SpectrumBand.h"
#include "measurement/SpectrumResolution.h"
#include "model/DisplaySettings.h"
#include "model/MeterModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class SpectrumChartModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(double plotWidth READ plotWidth WRITE setPlotWidth NOTIFY plotWidthChanged)
    Q_PROPERTY(double plotHeight READ plotHeight WRITE setPlotHeight NOTIFY plotHeightChanged)
    Q_PROPERTY(bool hasData READ hasData NOTIFY hasDataChanged)
    Q_PROPERTY(QString waitingText READ waitingText CONSTANT)
    Q_PROPERTY(bool showsBars READ showsBars NOTIFY styleChanged)
    Q_PROPERTY(QList<QPointF> levelLine READ levelLine NOTIFY geometryChanged)
    Q_PROPERTY(QList<QPointF> peakLine READ peakLine NOTIFY geometryChanged)
    Q_PROPERTY(QList<QPointF> area READ area NOTIFY geometryChanged)
    Q_PROPERTY(QVariantList frequencyTicks READ frequencyTicks NOTIFY axesChanged)
    Q_PROPERTY(QVariantList levelTicks READ levelTicks NOTIFY axesChanged)
    Q_PROPERTY(bool hasCursor READ hasCursor NOTIFY cursorChanged)
    Q_PROPERTY(QRectF cursorRect READ cursorRect NOTIFY cursorChanged)
    Q_PROPERTY(QString cursorText READ cursorText NOTIFY cursorChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY accessibleChanged)
    Q_PROPERTY(QString accessibleValue READ accessibleValue NOTIFY accessibleChanged)

public:
    enum class Style { bars, line };

    struct Domain {
        double low = 20.0;
        double high = 100.0;
        bool operator==(const Domain&) const = default;
    };
    struct Extent {
        double lower = 0.0;
        double upper = 0.0;
    };

    // The frequencies marked on the axis, whatever the resolution.
    static const std::vector<double>& frequencyMarks();
    // 3 dB of headroom over the highest peak, in steps of 10 dB, never under 60; 80 dB tall.
    static Domain levelDomain(const std::vector<double>& peaks);
    // The horizontal extent of a bar on the logarithmic axis, `fill` of its band's width.
    static Extent barExtent(const SpectrumBand& band, double fill);
    static double barFill(SpectrumResolution resolution);
    static double peakHoldHeight(SpectrumResolution resolution);
    static QString cursorBandTitle(SpectrumResolution resolution);

    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value)
    {
        setSource(meter_, value, &SpectrumChartModel::meterChanged);
    }
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &SpectrumChartModel::displayChanged);
    }

    explicit SpectrumChartModel(QObject* parent = nullptr);

    double plotWidth() const { return plotWidth_; }
    void setPlotWidth(double value);
    double plotHeight() const { return plotHeight_; }
    void setPlotHeight(double value);
    // Where the pointer is over the plot; `clearHover` when it leaves.
    Q_INVOKABLE void hover(double x);
    Q_INVOKABLE void clearHover();
    std::optional<double> hoverFrequency() const { return hoverFrequency_; }

    SpectrumResolution resolution() const;
    Style style() const;
    bool hasData() const { return shownData_.has_value(); }
    QString waitingText() const { return QStringLiteral("Waiting for audio\u2026"); }
    bool showsBars() const { return style() == Style::bars; }
    Domain domain() const { return domain_; }
    // Bars and peak holds, in plot coordinates; empty in the line style.
    const std::vector<QRectF>& barRects() const { return barRects_; }
    const std::vector<QRectF>& peakRects() const { return peakRects_; }
    QList<QPointF> levelLine() const { return levelLine_; }
    QList<QPointF> peakLine() const { return peakLine_; }
    QList<QPointF> area() const { return area_; }
    QVariantList frequencyTicks() const;
    QVariantList levelTicks() const;
    bool hasCursor() const { return cursorBand_.has_value(); }
    QRectF cursorRect() const { return cursorRect_; }
    QString cursorText() const { return cursorText_; }
    QString accessibleName() const { return accessibleName_; }
    QString accessibleValue() const { return accessibleValue_; }

    double xFor(double frequency) const;
    double yFor(double level) const;
    double frequencyAt(double x) const;

signals:
    void meterChanged();
    void displayChanged();
    void plotWidthChanged();
    void plotHeightChanged();
    void hasDataChanged();
    void styleChanged();
    void geometryChanged();
    void axesChanged();
    void cursorChanged();
    void accessibleChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    void layoutAxes();
    void layoutData();
    void updateCursor();
    void updateAccessible();

    QPointer<MeterModel> meter_;
    QPointer<DisplaySettings> display_;
    double plotWidth_ = 0.0;
    double plotHeight_ = 0.0;
    std::optional<double> hoverFrequency_;
    std::optional<BandDisplay> shownData_;
    SpectrumResolution shownResolution_ = SpectrumResolution::third;
    Style shownStyle_ = Style::bars;
    Domain domain_;
    std::vector<QRectF> barRects_;
    std::vector<QRectF> peakRects_;
    QList<QPointF> levelLine_;
    QList<QPointF> peakLine_;
    QList<QPointF> area_;
    struct Tick {
        double position = 0.0;
        QString text;
        bool operator==(const Tick&) const = default;
    };
    // The plot size the axes were laid out for.
    QSizeF axesPlot_ {-1.0, -1.0};
    std::vector<Tick> frequencyTicks_;
    std::vector<Tick> levelTicks_;
    std::optional<std::size_t> cursorBand_;
    QRectF cursorRect_;
    QString cursorText_;
    QString accessibleName_;
    QString accessibleValue_;
};

} // namespace ostrel
