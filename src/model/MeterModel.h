#pragma once

// Holds what the screen shows of a measurement, live or replayed: the latest level, statistics
// published twice a second, the rolling graph at four points a second, smoothed bands with peak
// holds for every resolution, the spectrogram, the dominant frequency, the feedback warning, and
// whether a signal is present and the input clips. All throttling is by the dates handed in.
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include <QObject>

#include "common/Date.h"
#include "measurement/FeedbackDetector.h"
#include "measurement/LevelStatistics.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/SpectrumResolution.h"
#include "model/MeterTypes.h"
#include "model/PeakHold.h"
#include "model/SpectrogramHistory.h"

namespace ostrel {

class MeterModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::optional<double> level READ level NOTIFY levelChanged)
    Q_PROPERTY(ostrel::LevelStatistics statistics READ statistics NOTIFY statisticsChanged)
    Q_PROPERTY(bool hasSignal READ hasSignal NOTIFY hasSignalChanged)
    Q_PROPERTY(bool isClipping READ isClipping NOTIFY isClippingChanged)
    Q_PROPERTY(std::optional<double> dominantFrequency READ dominantFrequency NOTIFY
            dominantFrequencyChanged)
    Q_PROPERTY(bool detectsFeedback READ detectsFeedback WRITE setDetectsFeedback NOTIFY
            detectsFeedbackChanged)
    Q_PROPERTY(bool suspendsFeedbackDetection READ suspendsFeedbackDetection WRITE
            setSuspendsFeedbackDetection NOTIFY suspendsFeedbackDetectionChanged)
    Q_PROPERTY(
        double graphDuration READ graphDuration WRITE setGraphDuration NOTIFY graphDurationChanged)

public:
    // A signal under this raw level for `silenceDelay` seconds is gone.
    static constexpr double silenceThresholdDBFS = -100.0;
    static constexpr double silenceDelay = 2.0;
    static constexpr double clipHold = 1.0;
    static constexpr double statisticsPeriod = 0.5;
    static constexpr double graphPeriod = 0.25;
    static constexpr double frequencyPeriod = 0.25;
    static constexpr double peakHoldTime = 1.5;
    static constexpr double peakFallRate = 10.0; // dB per second

    explicit MeterModel(QObject* parent = nullptr);

    void ingest(const MeasurementInterval& interval, Date now);
    std::optional<BandDisplay> display(SpectrumResolution resolution) const;
    void addMarker(const QString& label, Date at);
    void resetStatistics();
    void restoreStatistics(const LevelStatistics& statistics);
    void resetAll();
    // One spectrum column per interval at ten a second, and one spare second.
    static std::int64_t spectrogramCapacity(double duration);
    // Power-domain blend of an old and a new level: 0.7 of the old power, 0.3 of the new.
    static double blend(double oldLevel, double newLevel);

    std::optional<double> level() const { return level_; }
    const LevelStatistics& statistics() const { return statistics_; }
    const LevelStatistics& liveStatistics() const { return liveStatistics_; }
    const std::vector<GraphPoint>& graphPoints() const { return graphPoints_; }
    const std::vector<GraphMarker>& markers() const { return markers_; }
    bool hasSignal() const { return hasSignal_; }
    bool isClipping() const { return isClipping_; }
    const std::optional<std::vector<double>>& bandLevels() const { return bandLevels_; }
    const std::optional<std::vector<double>>& bandPeaks() const { return bandPeaks_; }
    std::optional<double> dominantFrequency() const { return dominantFrequency_; }
    const std::optional<FeedbackWarning>& feedbackWarning() const { return feedbackWarning_; }
    const std::map<SpectrumResolution, BandDisplay>& fineDisplays() const { return fineDisplays_; }
    const SpectrogramHistory& spectrogram() const { return spectrogram_; }
    bool detectsFeedback() const { return detectsFeedback_; }
    bool suspendsFeedbackDetection() const { return suspendsFeedbackDetection_; }
    double graphDuration() const { return graphDuration_; }
    const FeedbackDetector& feedbackDetector() const { return feedbackDetector_; }

    void setDetectsFeedback(bool value);
    void setSuspendsFeedbackDetection(bool value);
    void setGraphDuration(double seconds);

signals:
    void levelChanged();
    void statisticsChanged();
    void graphPointsChanged();
    void markersChanged();
    void hasSignalChanged();
    void isClippingChanged();
    void bandLevelsChanged();
    void bandPeaksChanged();
    void dominantFrequencyChanged();
    void feedbackWarningChanged();
    void fineDisplaysChanged();
    void spectrogramChanged();
    void detectsFeedbackChanged();
    void suspendsFeedbackDetectionChanged();
    void graphDurationChanged();

private:
    void ingestSpectrum(const Spectrum& spectrum, Date now);
    void updatePeaks(const std::vector<double>& levels, Date now);
    void ingestFine(const std::vector<double>& levels, Date now, double elapsed);
    void trimGraph(Date now);
    void clearFeedback();

    void setLevel(std::optional<double> value);
    void setStatistics(const LevelStatistics& value);
    void setHasSignal(bool value);
    void setIsClipping(bool value);
    void setBandLevels(std::optional<std::vector<double>> value);
    void setBandPeaks(std::optional<std::vector<double>> value);
    void setDominantFrequency(std::optional<double> value);
    void setFeedbackWarning(std::optional<FeedbackWarning> value);
    void setFineDisplays(std::map<SpectrumResolution, BandDisplay> value);

    std::optional<double> level_;
    LevelStatistics statistics_;
    std::vector<GraphPoint> graphPoints_;
    std::vector<GraphMarker> markers_;
    bool hasSignal_ = true;
    bool isClipping_ = false;
    std::optional<std::vector<double>> bandLevels_;
    std::optional<std::vector<double>> bandPeaks_;
    std::optional<double> dominantFrequency_;
    std::optional<FeedbackWarning> feedbackWarning_;
    std::map<SpectrumResolution, BandDisplay> fineDisplays_;
    SpectrogramHistory spectrogram_ {SpectrogramHistory::defaultRows, spectrogramCapacity(60.0)};
    bool detectsFeedback_ = true;
    bool suspendsFeedbackDetection_ = false;
    double graphDuration_ = 60.0;

    LevelStatistics liveStatistics_;
    Date lastGraphDate_ = distantPast;
    Date lastStatisticsDate_ = distantPast;
    std::optional<Date> silentSince_;
    Date lastClipDate_ = distantPast;
    std::int64_t nextPointID_ = 0;
    Date lastFrequencyDate_ = distantPast;
    std::vector<Date> peakTimes_;
    FeedbackDetector feedbackDetector_;
    std::optional<Date> lastSpectrumDate_;
    std::optional<std::vector<double>> smoothedFine_;
    std::map<SpectrumResolution, PeakHold> finePeakHolds_;
};

} // namespace ostrel
