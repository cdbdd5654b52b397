#include "views/spectrum/SpectrumChartModel.h"

#include <QLocale>
#include <QVariantMap>
#include <algorithm>
#include <cmath>

#include "views/components/FrequencyText.h"

namespace ostrel {

namespace {

QString decibels(double level)
{
    return QLocale().toString(level, 'f', 1);
}

} // namespace

SpectrumChartModel::SpectrumChartModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

const std::vector<double>& SpectrumChartModel::frequencyMarks()
{
    static const std::vector<double> marks {
        31.5, 63.0, 125.0, 250.0, 500.0, 1000.0, 2000.0, 4000.0, 8000.0, 16000.0};
    return marks;
}

SpectrumChartModel::Domain SpectrumChartModel::levelDomain(const std::vector<double>& peaks)
{
    if (peaks.empty()) return {};
    const double highest = *std::max_element(peaks.begin(), peaks.end());
    if (!(highest > 0.0)) return {};
    const double high = std::max(std::ceil((highest + 3.0) / 10.0) * 10.0, 60.0);
    return {std::max(high - 80.0, 0.0), high};
}

SpectrumChartModel::Extent SpectrumChartModel::barExtent(const SpectrumBand& band, double fill)
{
    const double inset = (1.0 - fill) * 0.5;
    const double ratio = std::pow(band.upper / band.lower, inset);
    return {band.lower * ratio, band.upper / ratio};
}

double SpectrumChartModel::barFill(SpectrumResolution resolution)
{
    return resolution == SpectrumResolution::twentyFourth ? 0.8 : 0.72;
}

double SpectrumChartModel::peakHoldHeight(SpectrumResolution resolution)
{
    return resolution == SpectrumResolution::third ? 1.5 : 0.5;
}

QString SpectrumChartModel::cursorBandTitle(SpectrumResolution resolution)
{
    return QStringLiteral("1/%1 oct band").arg(SpectrumResolutions::rawValue(resolution));
}

void SpectrumChartModel::setPlotWidth(double value)
{
    if (value == plotWidth_) return;
    plotWidth_ = value;
    emit plotWidthChanged();
    refresh();
}

void SpectrumChartModel::setPlotHeight(double value)
{
    if (value == plotHeight_) return;
    plotHeight_ = value;
    emit plotHeightChanged();
    refresh();
}

void SpectrumChartModel::hover(double x)
{
    hoverFrequency_ = frequencyAt(x);
    updateCursor();
}

void SpectrumChartModel::clearHover()
{
    hoverFrequency_.reset();
    updateCursor();
}

SpectrumResolution SpectrumChartModel::resolution() const
{
    return display_ ? display_->spectrumResolution() : SpectrumResolution::third;
}

SpectrumChartModel::Style SpectrumChartModel::style() const
{
    return display_ && display_->spectrumStyle() == SpectrumStyle::line ? Style::line : Style::bars;
}

QVariantList SpectrumChartModel::frequencyTicks() const
{
    // A narrow plot labels every other mark, so that the labels never run into each other.
    const std::size_t step = plotWidth_ < 360.0 ? 2 : 1;
    QVariantList list;
    for (std::size_t i = 0; i < frequencyTicks_.size(); ++i) {
        const auto& tick = frequencyTicks_[i];
        list.append(
            QVariantMap {{"x", tick.position}, {"text", i % step == 0 ? tick.text : QString()}});
    }
    return list;
}

QVariantList SpectrumChartModel::levelTicks() const
{
    QVariantList list;
    for (const auto& tick : levelTicks_)
        list.append(QVariantMap {{"y", tick.position}, {"text", tick.text}});
    return list;
}

double SpectrumChartModel::xFor(double frequency) const
{
    const auto& bands = SpectrumResolutions::bands(shownResolution_);
    const double low = std::log(bands.front().lower);
    const double high = std::log(bands.back().upper);
    return (std::log(std::max(frequency, 1e-9)) - low) / (high - low) * plotWidth_;
}

double SpectrumChartModel::yFor(double level) const
{
    const double span = domain_.high - domain_.low;
    const double y = (domain_.high - level) / span * plotHeight_;
    return std::clamp(y, 0.0, plotHeight_);
}

double SpectrumChartModel::frequencyAt(double x) const
{
    const auto& bands = SpectrumResolutions::bands(shownResolution_);
    const double low = std::log(bands.front().lower);
    const double high = std::log(bands.back().upper);
    const double fraction = plotWidth_ > 0.0 ? x / plotWidth_ : 0.0;
    return std::exp(low + fraction * (high - low));
}

void SpectrumChartModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(meter_);
    watch(display_);
    if (meter_) {
        track(connect(meter_, &MeterModel::bandLevelsChanged, this, update));
        track(connect(meter_, &MeterModel::fineDisplaysChanged, this, update));
        track(connect(meter_, &MeterModel::hasSignalChanged, this, update));
    }
    if (display_) {
        track(connect(display_, &DisplaySettings::spectrumResolutionChanged, this, update));
        track(connect(display_, &DisplaySettings::spectrumStyleChanged, this, update));
    }
}

void SpectrumChartModel::refresh()
{
    const bool hadData = shownData_.has_value();
    const Style oldStyle = shownStyle_;
    const SpectrumResolution oldResolution = shownResolution_;
    const Domain oldDomain = domain_;

    shownResolution_ = resolution();
    shownStyle_ = style();
    shownData_ = meter_ ? meter_->display(shownResolution_) : std::nullopt;
    // A display whose length is not the grid's belongs to another layout: nothing to draw yet.
    if (shownData_
        && shownData_->levels.size() != SpectrumResolutions::bands(shownResolution_).size())
        shownData_.reset();
    domain_ = shownData_ ? levelDomain(shownData_->peaks) : Domain {};

    if (hadData != shownData_.has_value()) emit hasDataChanged();
    if (oldStyle != shownStyle_) emit styleChanged();
    const QSizeF plot(plotWidth_, plotHeight_);
    if (oldDomain != domain_ || oldResolution != shownResolution_ || plot != axesPlot_) {
        axesPlot_ = plot;
        layoutAxes();
    }
    layoutData();
    updateCursor();
    updateAccessible();
}

void SpectrumChartModel::layoutAxes()
{
    frequencyTicks_.clear();
    for (double mark : frequencyMarks())
        frequencyTicks_.push_back({xFor(mark), FrequencyText::axisLabel(mark)});
    levelTicks_.clear();
    for (double level = std::ceil(domain_.low / 10.0) * 10.0; level <= domain_.high; level += 10.0)
        levelTicks_.push_back({yFor(level), QString::number(static_cast<int>(level))});
    emit axesChanged();
}

void SpectrumChartModel::layoutData()
{
    barRects_.clear();
    peakRects_.clear();
    levelLine_.clear();
    peakLine_.clear();
    area_.clear();
    if (shownData_) {
        const auto& bands = SpectrumResolutions::bands(shownResolution_);
        const auto& levels = shownData_->levels;
        const auto& peaks = shownData_->peaks;
        const bool hasPeaks = peaks.size() == levels.size();
        if (shownStyle_ == Style::bars) {
            const double fill = barFill(shownResolution_);
            const double holdHeight = peakHoldHeight(shownResolution_);
            barRects_.reserve(bands.size());
            peakRects_.reserve(bands.size());
            for (std::size_t i = 0; i < bands.size(); ++i) {
                const Extent extent = barExtent(bands[i], fill);
                const double left = xFor(extent.lower);
                const double width = std::max(xFor(extent.upper) - left, 0.5);
                const double top = yFor(levels[i]);
                barRects_.emplace_back(left, top, width, plotHeight_ - top);
                if (hasPeaks) {
                    const double peakY = yFor(peaks[i]);
                    peakRects_.emplace_back(left, peakY - holdHeight * 0.5, width, holdHeight);
                }
            }
        } else {
            levelLine_.reserve(static_cast<qsizetype>(bands.size()));
            for (std::size_t i = 0; i < bands.size(); ++i) {
                const double x = xFor(bands[i].center);
                levelLine_.append(QPointF(x, yFor(levels[i])));
                if (hasPeaks) peakLine_.append(QPointF(x, yFor(peaks[i])));
            }
            if (!levelLine_.isEmpty()) {
                area_ = levelLine_;
                area_.append(QPointF(levelLine_.back().x(), plotHeight_));
                area_.append(QPointF(levelLine_.front().x(), plotHeight_));
            }
        }
    }
    emit geometryChanged();
}

void SpectrumChartModel::updateCursor()
{
    std::optional<std::size_t> band;
    QRectF rect;
    QString text;
    if (hoverFrequency_ && shownData_) {
        const auto& bands = SpectrumResolutions::bands(shownResolution_);
        band = SpectrumBand::index(*hoverFrequency_, bands);
        if (band) {
            const double left = xFor(bands[*band].lower);
            rect = QRectF(left, 0.0, std::max(xFor(bands[*band].upper) - left, 1.0), plotHeight_);
            text = FrequencyText::hertz(bands[*band].center) + QStringLiteral(" \u00B7 ")
                + cursorBandTitle(shownResolution_) + QStringLiteral(" \u00B7 ")
                + decibels(shownData_->levels[*band]) + QStringLiteral(" dB");
        }
    }
    if (band == cursorBand_ && rect == cursorRect_ && text == cursorText_) return;
    cursorBand_ = band;
    cursorRect_ = rect;
    cursorText_ = text;
    emit cursorChanged();
}

void SpectrumChartModel::updateAccessible()
{
    const QString name = QString::fromStdString(SpectrumResolutions::title(shownResolution_))
        + QStringLiteral(" spectrum");
    QString value = QStringLiteral("No signal");
    if (shownData_ && meter_ && meter_->hasSignal() && !shownData_->levels.empty()) {
        const auto& levels = shownData_->levels;
        const auto loudest = static_cast<std::size_t>(
            std::max_element(levels.begin(), levels.end()) - levels.begin());
        const auto& bands = SpectrumResolutions::bands(shownResolution_);
        value = QStringLiteral("Loudest band ") + FrequencyText::hertz(bands[loudest].center)
            + QStringLiteral(" at ") + decibels(levels[loudest]) + QStringLiteral(" decibels");
    }
    if (name == accessibleName_ && value == accessibleValue_) return;
    accessibleName_ = name;
    accessibleValue_ = value;
    emit accessibleChanged();
}

} // namespace ostrel
