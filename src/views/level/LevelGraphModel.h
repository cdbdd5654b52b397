#pragma once

// The rolling level graph in plot coordinates: the line of the last `graphDuration` seconds, the
// y scale that keeps a steady room calm, the axis marks and the cue markers. The view draws what
// it is given.
#include <functional>
#include <vector>

#include <QFont>
#include <QList>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "common/Date.h"
#include "model/MeterModel.h"
#include "model/MeterTypes.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class LevelGraphModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MeterModel* meter READ meter WRITE setMeter NOTIFY meterChanged)
    Q_PROPERTY(double plotWidth READ plotWidth WRITE setPlotWidth NOTIFY plotWidthChanged)
    Q_PROPERTY(double plotHeight READ plotHeight WRITE setPlotHeight NOTIFY plotHeightChanged)
    Q_PROPERTY(QFont markerFont READ markerFont WRITE setMarkerFont NOTIFY markerFontChanged)
    Q_PROPERTY(QList<QPointF> linePoints READ linePoints NOTIFY lineChanged)
    Q_PROPERTY(bool hasNewestPoint READ hasNewestPoint NOTIFY lineChanged)
    Q_PROPERTY(QPointF newestPoint READ newestPoint NOTIFY lineChanged)
    Q_PROPERTY(QRectF newestDot READ newestDot NOTIFY lineChanged)
    Q_PROPERTY(double domainLow READ domainLow NOTIFY scaleChanged)
    Q_PROPERTY(double domainHigh READ domainHigh NOTIFY scaleChanged)
    Q_PROPERTY(double tickStep READ tickStep NOTIFY scaleChanged)
    Q_PROPERTY(QVariantList ticks READ ticks NOTIFY scaleChanged)
    Q_PROPERTY(QVariantList markers READ markers NOTIFY markersChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY accessibleNameChanged)

public:
    MeterModel* meter() const { return meter_.data(); }
    void setMeter(MeterModel* value) { setSource(meter_, value, &LevelGraphModel::meterChanged); }

    struct Domain {
        double low = 40.0;
        double high = 100.0;
        bool operator==(const Domain&) const = default;
    };
    struct Span {
        Date start;
        Date end;
    };
    struct Marker {
        double x = 0.0;
        double labelX = 0.0;
        QString label;
        bool operator==(const Marker&) const = default;
    };
    struct Tick {
        double y = 0.0;
        QString text;
        bool operator==(const Tick&) const = default;
    };

    // A mark of symbol size 28 covers 28 square points: a dot a little over 5 across.
    static constexpr double dotDiameter = 5.3;

    explicit LevelGraphModel(QObject* parent = nullptr);

    // From `end` (the newest point, else now) back by `duration`.
    static Span span(const std::vector<GraphPoint>& points, double duration, Date now);
    static std::vector<GraphPoint> pointsInside(const std::vector<GraphPoint>& points, Span span);
    static Domain levelDomain(const std::vector<GraphPoint>& points);
    // A mark every 10 dB, every 20 dB on a scale of more than 40 dB.
    static double tickStep(Domain domain);
    static std::vector<double> tickLevels(Domain domain);

    // Where the graph reads the present date when it has no point; tests set their own.
    void setClock(std::function<Date()> clock);

    double plotWidth() const { return plotWidth_; }
    void setPlotWidth(double value);
    double plotHeight() const { return plotHeight_; }
    void setPlotHeight(double value);
    QFont markerFont() const { return markerFont_; }
    void setMarkerFont(const QFont& value);

    QList<QPointF> linePoints() const { return linePoints_; }
    bool hasNewestPoint() const { return !linePoints_.isEmpty(); }
    QPointF newestPoint() const { return linePoints_.isEmpty() ? QPointF() : linePoints_.back(); }
    // The dot on the newest point, centred on it.
    QRectF newestDot() const;
    double domainLow() const { return domain_.low; }
    double domainHigh() const { return domain_.high; }
    double tickStep() const { return tickStep(domain_); }
    QVariantList ticks() const;
    QVariantList markers() const;
    const std::vector<Marker>& markerList() const { return markers_; }
    const std::vector<Tick>& tickList() const { return ticks_; }
    QString accessibleName() const { return accessibleName_; }

signals:
    void meterChanged();
    void plotWidthChanged();
    void plotHeightChanged();
    void markerFontChanged();
    void lineChanged();
    void scaleChanged();
    void markersChanged();
    void accessibleNameChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MeterModel> meter_;
    double xFor(Date date, Span span, double duration) const;
    double yFor(double level) const;

    std::function<Date()> clock_;
    double plotWidth_ = 0.0;
    double plotHeight_ = 0.0;
    QFont markerFont_;
    QList<QPointF> linePoints_;
    Domain domain_;
    std::vector<Tick> ticks_;
    std::vector<Marker> markers_;
    QString accessibleName_;
};

} // namespace ostrel
