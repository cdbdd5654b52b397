#include "views/main/settings/DisplayPageModel.h"

#include <algorithm>
#include <cmath>

#include "measurement/SpectrumResolution.h"
#include "model/AppearanceMode.h"
#include "model/SpectrumStyle.h"

namespace ostrel {

namespace {

template <typename Options, typename Value> int indexOf(const Options& options, Value value)
{
    const auto found = std::find(options.begin(), options.end(), value);
    return found == options.end() ? -1 : static_cast<int>(found - options.begin());
}

template <typename Options> bool inside(const Options& options, int index)
{
    return index >= 0 && index < static_cast<int>(options.size());
}

QString text(std::string_view value)
{
    return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

} // namespace

DisplayPageModel::DisplayPageModel(QObject* parent)
    : ViewModel(parent),
      elevatedRange_(ThresholdRanges::elevated(DisplaySettings::highThresholdKey.fallback)),
      highRange_(ThresholdRanges::high(DisplaySettings::elevatedThresholdKey.fallback))
{
    refresh();
}

QStringList DisplayPageModel::appearanceOptions()
{
    QStringList result;
    for (auto mode : AppearanceModes::all)
        result << text(AppearanceModes::title(mode));
    return result;
}

int DisplayPageModel::appearanceIndex() const
{
    return indexOf(
        AppearanceModes::all, display_ ? display_->appearance() : AppearanceMode::system);
}

void DisplayPageModel::setAppearanceIndex(int index)
{
    if (display_ && inside(AppearanceModes::all, index))
        display_->setAppearance(AppearanceModes::all[static_cast<std::size_t>(index)]);
}

QStringList DisplayPageModel::graphDurationOptions()
{
    return {QStringLiteral("30 seconds"), QStringLiteral("1 minute"), QStringLiteral("2 minutes")};
}

int DisplayPageModel::graphDurationIndex() const
{
    return indexOf(graphDurations,
        display_ ? display_->graphDuration() : DisplaySettings::graphDurationKey.fallback);
}

void DisplayPageModel::setGraphDurationIndex(int index)
{
    if (display_ && inside(graphDurations, index))
        display_->setGraphDuration(graphDurations[static_cast<std::size_t>(index)]);
}

double DisplayPageModel::elevatedThreshold() const
{
    return display_ ? display_->elevatedThreshold()
                    : DisplaySettings::elevatedThresholdKey.fallback;
}

void DisplayPageModel::setElevatedThreshold(double value)
{
    if (display_ && std::isfinite(value))
        display_->setElevatedThreshold(
            std::clamp(value, elevatedRange_.lower, elevatedRange_.upper));
}

double DisplayPageModel::highThreshold() const
{
    return display_ ? display_->highThreshold() : DisplaySettings::highThresholdKey.fallback;
}

void DisplayPageModel::setHighThreshold(double value)
{
    if (display_ && std::isfinite(value))
        display_->setHighThreshold(std::clamp(value, highRange_.lower, highRange_.upper));
}

void DisplayPageModel::setShowModeShowsGraph(bool value)
{
    if (display_) display_->setShowModeShowsGraph(value);
}

double DisplayPageModel::screenBrightness() const
{
    return display_ ? display_->screenBrightness() : DisplaySettings::brightestBrightness;
}

void DisplayPageModel::setScreenBrightness(double value)
{
    if (display_ && std::isfinite(value)) display_->setScreenBrightness(value);
}

QString DisplayPageModel::brightnessText() const
{
    return QString::number(std::lround(screenBrightness() * 100.0)) + QStringLiteral("%");
}

void DisplayPageModel::setUnhingedMode(bool value)
{
    if (display_) display_->setUnhingedMode(value);
}

QStringList DisplayPageModel::spectrumStyleOptions()
{
    QStringList result;
    for (auto style : SpectrumStyles::all)
        result << text(SpectrumStyles::title(style));
    return result;
}

int DisplayPageModel::spectrumStyleIndex() const
{
    return indexOf(SpectrumStyles::all, display_ ? display_->spectrumStyle() : SpectrumStyle::bars);
}

void DisplayPageModel::setSpectrumStyleIndex(int index)
{
    if (display_ && inside(SpectrumStyles::all, index))
        display_->setSpectrumStyle(SpectrumStyles::all[static_cast<std::size_t>(index)]);
}

QStringList DisplayPageModel::resolutionOptions()
{
    QStringList result;
    for (auto resolution : SpectrumResolutions::all)
        result << QStringLiteral("1/%1 Octave").arg(SpectrumResolutions::rawValue(resolution));
    return result;
}

int DisplayPageModel::resolutionIndex() const
{
    return indexOf(SpectrumResolutions::all,
        display_ ? display_->spectrumResolution() : SpectrumResolution::third);
}

void DisplayPageModel::setResolutionIndex(int index)
{
    if (display_ && inside(SpectrumResolutions::all, index))
        display_->setSpectrumResolution(SpectrumResolutions::all[static_cast<std::size_t>(index)]);
}

bool DisplayPageModel::resolutionEnabled() const
{
    return !display_ || display_->spectrumStyle() != SpectrumStyle::spectrogram;
}

QString DisplayPageModel::spectrumFooter() const
{
    if (!resolutionEnabled())
        return QStringLiteral(
            "The spectrogram always uses 1/24-octave bands and spans the graph duration.");
    return QStringLiteral(
        "Finer bands help pin down a frequency for EQ. Below about 400 Hz they're measured over "
        "1.4 seconds, so bass detail responds more slowly.");
}

void DisplayPageModel::attach()
{
    watch(display_);
    if (!display_) return;
    for (auto signal : {&DisplaySettings::appearanceChanged, &DisplaySettings::graphDurationChanged,
             &DisplaySettings::elevatedThresholdChanged, &DisplaySettings::highThresholdChanged,
             &DisplaySettings::showModeShowsGraphChanged, &DisplaySettings::screenBrightnessChanged,
             &DisplaySettings::unhingedModeChanged, &DisplaySettings::spectrumStyleChanged,
             &DisplaySettings::spectrumResolutionChanged})
        track(connect(display_, signal, this, &DisplayPageModel::refresh));
}

void DisplayPageModel::refresh()
{
    elevatedRange_ = ThresholdRanges::elevated(highThreshold());
    highRange_ = ThresholdRanges::high(elevatedThreshold());
    emit valuesChanged();
}

} // namespace ostrel
