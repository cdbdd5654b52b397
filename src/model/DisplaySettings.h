#pragma once

// How the screen shows the measurement: appearance, graph span, level thresholds, the show-mode
// graph, dimming, the spectrum's resolution and style, the feedback warning and the wording.
#include "measurement/LevelRange.h"
#include "measurement/SpectrumResolution.h"
#include "model/AppearanceMode.h"
#include "model/SpectrumStyle.h"
#include "settings/SettingsGroup.h"

namespace ostrel {

class DisplaySettings : public SettingsGroup {
    Q_OBJECT
    Q_PROPERTY(
        double graphDuration READ graphDuration WRITE setGraphDuration NOTIFY graphDurationChanged)
    Q_PROPERTY(double elevatedThreshold READ elevatedThreshold WRITE setElevatedThreshold NOTIFY
            elevatedThresholdChanged)
    Q_PROPERTY(
        double highThreshold READ highThreshold WRITE setHighThreshold NOTIFY highThresholdChanged)
    Q_PROPERTY(bool showModeShowsGraph READ showModeShowsGraph WRITE setShowModeShowsGraph NOTIFY
            showModeShowsGraphChanged)
    Q_PROPERTY(double screenBrightness READ screenBrightness WRITE setScreenBrightness NOTIFY
            screenBrightnessChanged)
    Q_PROPERTY(bool feedbackWarningEnabled READ feedbackWarningEnabled WRITE
            setFeedbackWarningEnabled NOTIFY feedbackWarningEnabledChanged)
    Q_PROPERTY(bool unhingedMode READ unhingedMode WRITE setUnhingedMode NOTIFY unhingedModeChanged)

public:
    static constexpr double dimmestBrightness = 0.2;
    static constexpr double brightestBrightness = 1.0;

    static const Setting<AppearanceMode> appearanceKey;
    static const Setting<double> graphDurationKey;
    static const Setting<double> elevatedThresholdKey;
    static const Setting<double> highThresholdKey;
    static const Setting<bool> showModeShowsGraphKey;
    static const Setting<double> screenBrightnessKey;
    static const Setting<SpectrumResolution> spectrumResolutionKey;
    static const Setting<SpectrumStyle> spectrumStyleKey;
    static const Setting<bool> feedbackWarningEnabledKey;
    static const Setting<bool> unhingedModeKey;

    // 0.2 ... 1.0: the screen never dims to nothing.
    static double clampedBrightness(double value);

    explicit DisplaySettings(SettingsStore& store, QObject* parent = nullptr);

    AppearanceMode appearance() const { return appearance_; }
    void setAppearance(AppearanceMode value);
    double graphDuration() const { return graphDuration_; }
    void setGraphDuration(double value);
    double elevatedThreshold() const { return elevatedThreshold_; }
    void setElevatedThreshold(double value);
    double highThreshold() const { return highThreshold_; }
    void setHighThreshold(double value);
    bool showModeShowsGraph() const { return showModeShowsGraph_; }
    void setShowModeShowsGraph(bool value);
    double screenBrightness() const { return screenBrightness_; }
    // Clamped to 0.2 ... 1.0 behind every assignment; the clamped value is stored.
    void setScreenBrightness(double value);
    SpectrumResolution spectrumResolution() const { return spectrumResolution_; }
    void setSpectrumResolution(SpectrumResolution value);
    SpectrumStyle spectrumStyle() const { return spectrumStyle_; }
    void setSpectrumStyle(SpectrumStyle value);
    bool feedbackWarningEnabled() const { return feedbackWarningEnabled_; }
    void setFeedbackWarningEnabled(bool value);
    bool unhingedMode() const { return unhingedMode_; }
    void setUnhingedMode(bool value);

    // The high threshold is tested first, so crossed thresholds still give the high range.
    LevelRange levelRange(double level) const;

signals:
    void appearanceChanged();
    void graphDurationChanged();
    void elevatedThresholdChanged();
    void highThresholdChanged();
    void showModeShowsGraphChanged();
    void screenBrightnessChanged();
    void spectrumResolutionChanged();
    void spectrumStyleChanged();
    void feedbackWarningEnabledChanged();
    void unhingedModeChanged();

private:
    AppearanceMode appearance_;
    double graphDuration_;
    double elevatedThreshold_;
    double highThreshold_;
    bool showModeShowsGraph_;
    double screenBrightness_;
    SpectrumResolution spectrumResolution_;
    SpectrumStyle spectrumStyle_;
    bool feedbackWarningEnabled_;
    bool unhingedMode_;
};

} // namespace ostrel
