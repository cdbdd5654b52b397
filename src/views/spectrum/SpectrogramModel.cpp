#include "views/spectrum/SpectrogramModel.h"

#include <QLocale>
#include <QVariantMap>
#include <algorithm>
#include <cmath>

#include "measurement/SpectrumBand.h"
#include "views/components/FrequencyText.h"
#include "views/spectrum/SpectrumChartModel.h"

namespace ostrel {

namespace {

constexpr double fineRows = static_cast<double>(SpectrumBand::fineCount);
// Keeps the readout clear of the pointer.
constexpr double cursorOffset = 12.0;

} // namespace

SpectrogramModel::SpectrogramModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

double SpectrogramModel::heightFraction(double frequency)
{
    return (24.0 * std::log2(frequency / 1000.0) + 136.0) / fineRows;
}

void SpectrogramModel::setPlotWidth(double value)
{
    if (value == plotWidth_) return;
    plotWidth_ = value;
    emit plotWidthChanged();
    updateCursor();
}

void SpectrogramModel::setPlotHeight(double value)
{
    if (value == plotHeight_) return;
    plotHeight_ = value;
    emit plotHeightChanged();
    layoutGrid();
    updateCursor();
}

void SpectrogramModel::hover(double x, double y, double readoutWidth, double readoutHeight)
{
    hover_ = QPointF(x, y);
    readoutSize_ = QSizeF(readoutWidth, readoutHeight);
    updateCursor();
}

void SpectrogramModel::clearHover()
{
    hover_.reset();
    updateCursor();
}

void SpectrogramModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(meter_);
    if (!meter_) return;
    track(connect(meter_, &MeterModel::spectrogramChanged, this, update));
    track(connect(meter_, &MeterModel::graphDurationChanged, this, update));
}

void SpectrogramModel::refresh()
{
    const bool empty = !meter_ || meter_->spectrogram().count() == 0;
    if (empty != isEmpty_) {
        isEmpty_ = empty;
        emit isEmptyChanged();
    }
    const double duration = meter_ ? meter_->graphDuration() : 60.0;
    const QString name = QStringLiteral("Spectrogram of the last %1 seconds")
                             .arg(QLocale().toString(duration, 'f', 0));
    if (name != accessibleName_) {
        accessibleName_ = name;
        emit accessibleNameChanged();
    }
    if (gridLines_.isEmpty()) layoutGrid();
    if (hover_) updateCursor();
}

void SpectrogramModel::layoutGrid()
{
    QVariantList lines;
    for (double mark : SpectrumChartModel::frequencyMarks()) {
        const double y = plotHeight_ * (1.0 - heightFraction(mark));
        lines.append(QVariantMap {{"y", y}, {"text", FrequencyText::axisLabel(mark)}});
    }
    gridLines_ = lines;
    emit gridLinesChanged();
}

void SpectrogramModel::updateCursor()
{
    QString text;
    QPointF position;
    if (hover_ && meter_ && plotWidth_ > 0.0 && plotHeight_ > 0.0) {
        const double fromBottom = 1.0 - std::clamp(hover_->y() / plotHeight_, 0.0, 1.0);
        const auto row = std::min(static_cast<std::int64_t>(fromBottom * fineRows),
            static_cast<std::int64_t>(SpectrumBand::fineCount) - 1);
        text = FrequencyText::hertz(SpectrumBand::fine()[static_cast<std::size_t>(row)].center);

        // The same right-aligned columns as the picture.
        const SpectrogramHistory& history = meter_->spectrogram();
        const auto span = std::max<std::int64_t>(
            1, static_cast<std::int64_t>(std::lround(meter_->graphDuration() * 10.0)));
        const auto fromRight
            = static_cast<std::int64_t>((plotWidth_ - std::clamp(hover_->x(), 0.0, plotWidth_))
                / plotWidth_ * static_cast<double>(span));
        const std::int64_t column = history.count() - 1 - std::min(fromRight, span - 1);
        if (column >= 0 && row < history.rows()) {
            const float level = history.level(column, row);
            // A band without a measurement has no level to show.
            if (level > -200.0f) {
                text += QStringLiteral(" \u00B7 ")
                    + QLocale().toString(static_cast<double>(level), 'f', 1)
                    + QStringLiteral(" dB");
            }
        }
        const double x = std::clamp(
            hover_->x() + cursorOffset, 0.0, std::max(plotWidth_ - readoutSize_.width(), 0.0));
        const double y = std::clamp(hover_->y() - cursorOffset - readoutSize_.height(), 0.0,
            std::max(plotHeight_ - readoutSize_.height(), 0.0));
        position = QPointF(x, y);
    }
    if (text == cursorText_ && position == cursorPosition_) return;
    cursorText_ = text;
    cursorPosition_ = position;
    emit cursorChanged();
}

} // namespace ostrel
