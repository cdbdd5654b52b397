#include "views/level/LevelGraphModel.h"

#include <QFontMetricsF>
#include <QVariantMap>
#include <algorithm>
#include <chrono>
#include <cmath>

namespace ostrel {

LevelGraphModel::LevelGraphModel(QObject* parent)
    : ViewModel(parent), clock_([] { return std::chrono::system_clock::now(); })
{
    refresh();
}

LevelGraphModel::Span LevelGraphModel::span(
    const std::vector<GraphPoint>& points, double duration, Date now)
{
    const Date end = points.empty() ? now : points.back().date;
    return {addingSeconds(end, -duration), end};
}

std::vector<GraphPoint> LevelGraphModel::pointsInside(
    const std::vector<GraphPoint>& points, Span span)
{
    std::vector<GraphPoint> inside;
    inside.reserve(points.size());
    for (const auto& point : points) {
        if (point.date >= span.start && point.date <= span.end) inside.push_back(point);
    }
    return inside;
}

LevelGraphModel::Domain LevelGraphModel::levelDomain(const std::vector<GraphPoint>& points)
{
    // Silence sits at the level floor far below zero; it would flatten every real level.
    std::optional<double> smallest;
    std::optional<double> largest;
    for (const auto& point : points) {
        if (!(point.level > 0.0)) continue;
        smallest = smallest ? std::min(*smallest, point.level) : point.level;
        largest = largest ? std::max(*largest, point.level) : point.level;
    }
    if (!smallest) return {};

    double low = std::floor((*smallest - 3.0) / 10.0) * 10.0;
    double high = std::ceil((*largest + 3.0) / 10.0) * 10.0;
    // A quiet, steady room is never drawn as a wild line.
    if (high - low < 30.0) {
        low = std::floor((low + high) * 0.5 - 15.0);
        high = low + 30.0;
    }
    return {std::max(low, 0.0), high};
}

double LevelGraphModel::tickStep(Domain domain)
{
    return domain.high - domain.low > 40.0 ? 20.0 : 10.0;
}

std::vector<double> LevelGraphModel::tickLevels(Domain domain)
{
    const double step = tickStep(domain);
    std::vector<double> levels;
    for (double level = std::ceil(domain.low / step) * step; level <= domain.high; level += step)
        levels.push_back(level);
    return levels;
}

void LevelGraphModel::setClock(std::function<Date()> clock)
{
    clock_ = std::move(clock);
    refresh();
}

void LevelGraphModel::setPlotWidth(double value)
{
    if (value == plotWidth_) return;
    plotWidth_ = value;
    emit plotWidthChanged();
    refresh();
}

void LevelGraphModel::setPlotHeight(double value)
{
    if (value == plotHeight_) return;
    plotHeight_ = value;
    emit plotHeightChanged();
    refresh();
}

void LevelGraphModel::setMarkerFont(const QFont& value)
{
    if (value == markerFont_) return;
    markerFont_ = value;
    emit markerFontChanged();
    refresh();
}

QRectF LevelGraphModel::newestDot() const
{
    const QPointF centre = newestPoint();
    return {
        centre.x() - dotDiameter / 2.0, centre.y() - dotDiameter / 2.0, dotDiameter, dotDiameter};
}

QVariantList LevelGraphModel::ticks() const
{
    QVariantList list;
    for (const auto& tick : ticks_)
        list.append(QVariantMap {{"y", tick.y}, {"text", tick.text}});
    return list;
}

QVariantList LevelGraphModel::markers() const
{
    QVariantList list;
    for (const auto& marker : markers_) {
        list.append(
            QVariantMap {{"x", marker.x}, {"labelX", marker.labelX}, {"label", marker.label}});
    }
    return list;
}

void LevelGraphModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(meter_);
    if (!meter_) return;
    track(connect(meter_, &MeterModel::graphPointsChanged, this, update));
    track(connect(meter_, &MeterModel::markersChanged, this, update));
    track(connect(meter_, &MeterModel::graphDurationChanged, this, update));
}

double LevelGraphModel::xFor(Date date, Span span, double duration) const
{
    if (!(duration > 0.0)) return plotWidth_;
    return plotWidth_ * secondsBetween(span.start, date) / duration;
}

double LevelGraphModel::yFor(double level) const
{
    const double range = domain_.high - domain_.low;
    const double fraction = range > 0.0 ? (domain_.high - level) / range : 1.0;
    // Below the scale (silence) the line runs along the bottom rather than off the plot.
    return plotHeight_ * std::clamp(fraction, 0.0, 1.0);
}

void LevelGraphModel::refresh()
{
    static const std::vector<GraphPoint> none;
    static const std::vector<GraphMarker> noMarkers;
    const auto& points = meter_ ? meter_->graphPoints() : none;
    const auto& allMarkers = meter_ ? meter_->markers() : noMarkers;
    const double duration = meter_ ? meter_->graphDuration() : 60.0;

    const Span window = span(points, duration, clock_());
    const auto inside = pointsInside(points, window);
    const Domain domain = levelDomain(inside);
    const bool scaleMoved = domain != domain_;
    domain_ = domain;

    QList<QPointF> line;
    line.reserve(static_cast<qsizetype>(inside.size()));
    for (const auto& point : inside)
        line.append({xFor(point.date, window, duration), yFor(point.level)});
    if (line != linePoints_) {
        linePoints_ = std::move(line);
        emit lineChanged();
    }

    std::vector<Tick> ticks;
    for (double level : tickLevels(domain_))
        ticks.push_back({yFor(level), QString::number(static_cast<int>(level))});
    if (scaleMoved || ticks != ticks_) {
        ticks_ = std::move(ticks);
        emit scaleChanged();
    }

    std::vector<Marker> markers;
    for (const auto& marker : allMarkers) {
        if (marker.date < window.start || marker.date > window.end) continue;
        const double x = xFor(marker.date, window, duration);
        // The label starts at its rule but never leaves the plot on the right.
        const double labelWidth = QFontMetricsF(markerFont_).horizontalAdvance(marker.label);
        const double room = std::max(0.0, plotWidth_ - labelWidth);
        markers.push_back({x, std::clamp(x, 0.0, room), marker.label});
    }
    if (markers != markers_) {
        markers_ = std::move(markers);
        emit markersChanged();
    }

    const QString name = QStringLiteral("Sound level over the last ") + QString::number(duration)
        + QStringLiteral(" seconds");
    if (name != accessibleName_) {
        accessibleName_ = name;
        emit accessibleNameChanged();
    }
}

} // namespace ostrel
