#include "model/DisplaySettings.h"

namespace ostrel {

namespace {

using AppearanceText
    = RawTextSetting<AppearanceMode, &AppearanceModes::fromRawValue, &AppearanceModes::rawValue>;
using StyleText
    = RawTextSetting<SpectrumStyle, &SpectrumStyles::fromRawValue, &SpectrumStyles::rawValue>;

std::optional<SpectrumResolution> resolutionFromRaw(long long raw)
{
    if (raw < 0 || raw > 1000) return std::nullopt;
    return SpectrumResolutions::fromRawValue(static_cast<int>(raw));
}

int resolutionToRaw(SpectrumResolution resolution)
{
    return SpectrumResolutions::rawValue(resolution);
}

// 3, 6, 12 or 24; any other number gives the default.
using ResolutionNumber
    = RawNumberSetting<SpectrumResolution, long long, &resolutionFromRaw, &resolutionToRaw>;

} // namespace

const Setting<AppearanceMode> DisplaySettings::appearanceKey {
    "appearance", AppearanceMode::system, &AppearanceText::parse, &AppearanceText::format};
const Setting<double> DisplaySettings::graphDurationKey {"graphDuration", 60.0};
const Setting<double> DisplaySettings::elevatedThresholdKey {"elevatedThreshold", 85.0};
const Setting<double> DisplaySettings::highThresholdKey {"highThreshold", 95.0};
const Setting<bool> DisplaySettings::showModeShowsGraphKey {"showModeShowsGraph", true};
const Setting<double> DisplaySettings::screenBrightnessKey {"screenBrightness", 1.0,
    &SettingText<double>::parse, &SettingText<double>::format, &DisplaySettings::clampedBrightness};
const Setting<SpectrumResolution> DisplaySettings::spectrumResolutionKey {"spectrumResolution",
    SpectrumResolution::third, &ResolutionNumber::parse, &ResolutionNumber::format};
const Setting<SpectrumStyle> DisplaySettings::spectrumStyleKey {
    "spectrumStyle", SpectrumStyle::bars, &StyleText::parse, &StyleText::format};
const Setting<bool> DisplaySettings::feedbackWarningEnabledKey {"feedbackWarningEnabled", true};
const Setting<bool> DisplaySettings::unhingedModeKey {"unhingedMode", false};

double DisplaySettings::clampedBrightness(double value)
{
    if (!(value > dimmestBrightness)) return dimmestBrightness; // NaN too
    return value > brightestBrightness ? brightestBrightness : value;
}

DisplaySettings::DisplaySettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      appearance_(read(appearanceKey)),
      graphDuration_(read(graphDurationKey)),
      elevatedThreshold_(read(elevatedThresholdKey)),
      highThreshold_(read(highThresholdKey)),
      showModeShowsGraph_(read(showModeShowsGraphKey)),
      screenBrightness_(read(screenBrightnessKey)),
      spectrumResolution_(read(spectrumResolutionKey)),
      spectrumStyle_(read(spectrumStyleKey)),
      feedbackWarningEnabled_(read(feedbackWarningEnabledKey)),
      unhingedMode_(read(unhingedModeKey))
{
}

void DisplaySettings::setAppearance(AppearanceMode value)
{
    assign(appearance_, value, appearanceKey, &DisplaySettings::appearanceChanged);
}

void DisplaySettings::setGraphDuration(double value)
{
    assign(graphDuration_, value, graphDurationKey, &DisplaySettings::graphDurationChanged);
}

void DisplaySettings::setElevatedThreshold(double value)
{
    assign(elevatedThreshold_, value, elevatedThresholdKey,
        &DisplaySettings::elevatedThresholdChanged);
}

void DisplaySettings::setHighThreshold(double value)
{
    assign(highThreshold_, value, highThresholdKey, &DisplaySettings::highThresholdChanged);
}

void DisplaySettings::setShowModeShowsGraph(bool value)
{
    assign(showModeShowsGraph_, value, showModeShowsGraphKey,
        &DisplaySettings::showModeShowsGraphChanged);
}

void DisplaySettings::setScreenBrightness(double value)
{
    assign(
        screenBrightness_, value, screenBrightnessKey, &DisplaySettings::screenBrightnessChanged);
}

void DisplaySettings::setSpectrumResolution(SpectrumResolution value)
{
    assign(spectrumResolution_, value, spectrumResolutionKey,
        &DisplaySettings::spectrumResolutionChanged);
}

void DisplaySettings::setSpectrumStyle(SpectrumStyle value)
{
    assign(spectrumStyle_, value, spectrumStyleKey, &DisplaySettings::spectrumStyleChanged);
}

void DisplaySettings::setFeedbackWarningEnabled(bool value)
{
    assign(feedbackWarningEnabled_, value, feedbackWarningEnabledKey,
        &DisplaySettings::feedbackWarningEnabledChanged);
}

void DisplaySettings::setUnhingedMode(bool value)
{
    assign(unhingedMode_, value, unhingedModeKey, &DisplaySettings::unhingedModeChanged);
}

LevelRange DisplaySettings::levelRange(double level) const
{
    return LevelRanges::level(level, elevatedThreshold_, highThreshold_);
}

} // namespace ostrel
