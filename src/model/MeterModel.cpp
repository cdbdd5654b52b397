#include "model/MeterModel.h"

#include <algorithm>
#include <cmath>

#include "measurement/SPLMath.h"
#include "measurement/SpectrumBand.h"

namespace ostrel {

MeterModel::MeterModel(QObject* parent) : QObject(parent) { }

std::int64_t MeterModel::spectrogramCapacity(double duration)
{
    return static_cast<std::int64_t>(std::trunc(duration * 10.0)) + 10;
}

double MeterModel::blend(double oldLevel, double newLevel)
{
    // Powers, never decibels: a band that falls quiet decays by 0.7 in power per spectrum.
    return SPLMath::decibels(0.7 * SPLMath::power(oldLevel) + 0.3 * SPLMath::power(newLevel));
}

void MeterModel::ingest(const MeasurementInterval& interval, Date now)
{
    // Silence is judged on the raw digital level, whatever the calibration.
    const double rawLevel = interval.rawLevelDBFS();
    if (rawLevel < silenceThresholdDBFS) {
        if (!silentSince_) silentSince_ = now;
    } else {
        silentSince_.reset();
    }
    setHasSignal(!silentSince_ || secondsBetween(*silentSince_, now) < silenceDelay);

    if (interval.clipped) lastClipDate_ = now;
    setIsClipping(secondsBetween(lastClipDate_, now) < clipHold);

    setLevel(interval.level);
    liveStatistics_.add(interval);
    if (interval.spectrum) ingestSpectrum(*interval.spectrum, now);

    if (secondsBetween(lastStatisticsDate_, now) >= statisticsPeriod) {
        setStatistics(liveStatistics_);
        lastStatisticsDate_ = now;
    }
    if (secondsBetween(lastGraphDate_, now) >= graphPeriod) {
        lastGraphDate_ = now;
        graphPoints_.push_back({nextPointID_++, now, interval.level});
        trimGraph(now);
        emit graphPointsChanged();
    }
}

void MeterModel::ingestSpectrum(const Spectrum& spectrum, Date now)
{
    std::vector<double> levels(spectrum.bandLevels.begin(), spectrum.bandLevels.end());
    if (bandLevels_ && bandLevels_->size() == levels.size()) {
        for (std::size_t i = 0; i < levels.size(); ++i)
            levels[i] = blend((*bandLevels_)[i], levels[i]);
    }
    setBandLevels(levels);

    const double elapsed = lastSpectrumDate_ ? secondsBetween(*lastSpectrumDate_, now) : 0.0;
    updatePeaks(levels, now);

    // Fine levels are a fixed-size array, so every spectrum has them.
    ingestFine({spectrum.fineBandLevels.begin(), spectrum.fineBandLevels.end()}, now, elapsed);

    if (detectsFeedback_ && !suspendsFeedbackDetection_ && hasSignal_) {
        setFeedbackWarning(feedbackDetector_.update(spectrum.peak, now));
    }

    if (secondsBetween(lastFrequencyDate_, now) >= frequencyPeriod) {
        lastFrequencyDate_ = now;
        setDominantFrequency(hasSignal_ ? spectrum.dominantFrequency : std::nullopt);
    }
}

void MeterModel::updatePeaks(const std::vector<double>& levels, Date now)
{
    const double decay
        = lastSpectrumDate_ ? peakFallRate * secondsBetween(*lastSpectrumDate_, now) : 0.0;
    lastSpectrumDate_ = now;

    if (!bandPeaks_ || bandPeaks_->size() != levels.size() || peakTimes_.size() != levels.size()) {
        peakTimes_.assign(levels.size(), now);
        setBandPeaks(levels);
        return;
    }
    std::vector<double> peaks = *bandPeaks_;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        if (peaks[i] <= levels[i]) {
            peaks[i] = levels[i];
            peakTimes_[i] = now;
        } else if (secondsBetween(peakTimes_[i], now) > peakHoldTime) {
            peaks[i] = std::max(peaks[i] - decay, levels[i]);
        }
    }
    setBandPeaks(std::move(peaks));
}

void MeterModel::ingestFine(const std::vector<double>& levels, Date now, double elapsed)
{
    std::vector<double> smoothed = levels;
    if (smoothedFine_ && smoothedFine_->size() == levels.size()) {
        for (std::size_t i = 0; i < levels.size(); ++i)
            smoothed[i] = blend((*smoothedFine_)[i], levels[i]);
    }
    smoothedFine_ = smoothed;
    spectrogram_.append(smoothed, now);
    emit spectrogramChanged();

    // Thirds have exact bands of their own; the finer views are groups of the fine grid.
    std::map<SpectrumResolution, BandDisplay> displays;
    for (auto resolution : {SpectrumResolution::sixth, SpectrumResolution::twelfth,
             SpectrumResolution::twentyFourth}) {
        auto grouped
            = SpectrumBand::group(smoothed, *SpectrumResolutions::fineBandsPerBand(resolution));
        PeakHold& hold = finePeakHolds_[resolution];
        hold.update(grouped, now, elapsed);
        displays[resolution] = BandDisplay {std::move(grouped), hold.peaks};
    }
    setFineDisplays(std::move(displays));
}

void MeterModel::trimGraph(Date now)
{
    // One spare second beyond the window, so the graph's left edge never shows a gap.
    const Date cutoff = addingSeconds(now, -(graphDuration_ + 1.0));
    const auto first = std::find_if(graphPoints_.begin(), graphPoints_.end(),
        [cutoff](const GraphPoint& point) { return point.date >= cutoff; });
    // With no point inside the window a stale list stays until a newer point arrives.
    if (first != graphPoints_.end() && first != graphPoints_.begin()) {
        graphPoints_.erase(graphPoints_.begin(), first);
        emit graphPointsChanged();
    }
    const auto before = markers_.size();
    std::erase_if(markers_, [cutoff](const GraphMarker& marker) { return marker.date < cutoff; });
    if (markers_.size() != before) emit markersChanged();
}

std::optional<BandDisplay> MeterModel::display(SpectrumResolution resolution) const
{
    if (resolution == SpectrumResolution::third) {
        if (!bandLevels_) return std::nullopt;
        return BandDisplay {*bandLevels_, bandPeaks_ ? *bandPeaks_ : *bandLevels_};
    }
    const auto found = fineDisplays_.find(resolution);
    if (found == fineDisplays_.end()) return std::nullopt;
    return found->second;
}

void MeterModel::addMarker(const QString& label, Date at)
{
    markers_.push_back({QUuid::createUuid(), at, label});
    emit markersChanged();
    trimGraph(at);
}

void MeterModel::resetStatistics()
{
    liveStatistics_ = {};
    setStatistics({});
}

void MeterModel::restoreStatistics(const LevelStatistics& statistics)
{
    liveStatistics_ = statistics;
    setStatistics(statistics);
}

void MeterModel::resetAll()
{
    resetStatistics();
    lastGraphDate_ = lastStatisticsDate_ = lastFrequencyDate_ = lastClipDate_ = distantPast;
    setLevel(std::nullopt);
    setBandLevels(std::nullopt);
    setBandPeaks(std::nullopt);
    peakTimes_.clear();
    lastSpectrumDate_.reset();
    smoothedFine_.reset();
    finePeakHolds_.clear();
    setFineDisplays({});
    if (spectrogram_.count() > 0) {
        spectrogram_.removeAll();
        emit spectrogramChanged();
    }
    if (!markers_.empty()) {
        markers_.clear();
        emit markersChanged();
    }
    clearFeedback();
    setDominantFrequency(std::nullopt);
    if (!graphPoints_.empty()) {
        graphPoints_.clear();
        emit graphPointsChanged();
    }
    setHasSignal(true);
    setIsClipping(false);
    silentSince_.reset();
}

void MeterModel::clearFeedback()
{
    feedbackDetector_.clear();
    setFeedbackWarning(std::nullopt);
}

void MeterModel::setDetectsFeedback(bool value)
{
    if (value != detectsFeedback_) {
        detectsFeedback_ = value;
        emit detectsFeedbackChanged();
    }
    if (!value) clearFeedback();
}

void MeterModel::setSuspendsFeedbackDetection(bool value)
{
    if (value != suspendsFeedbackDetection_) {
        suspendsFeedbackDetection_ = value;
        emit suspendsFeedbackDetectionChanged();
    }
    // A calibrator's steady tone must raise no warning.
    if (value) clearFeedback();
}

void MeterModel::setGraphDuration(double seconds)
{
    if (seconds == graphDuration_) return;
    graphDuration_ = seconds;
    emit graphDurationChanged();
    trimGraph(graphPoints_.empty() ? std::chrono::system_clock::now() : graphPoints_.back().date);
    const auto capacity = spectrogramCapacity(seconds);
    if (capacity != spectrogram_.capacity()) {
        spectrogram_.resize(capacity);
        emit spectrogramChanged();
    }
}

void MeterModel::setLevel(std::optional<double> value)
{
    if (value == level_) return;
    level_ = value;
    emit levelChanged();
}

void MeterModel::setStatistics(const LevelStatistics& value)
{
    if (value == statistics_) return;
    statistics_ = value;
    emit statisticsChanged();
}

void MeterModel::setHasSignal(bool value)
{
    if (value == hasSignal_) return;
    hasSignal_ = value;
    emit hasSignalChanged();
}

void MeterModel::setIsClipping(bool value)
{
    if (value == isClipping_) return;
    isClipping_ = value;
    emit isClippingChanged();
}

void MeterModel::setBandLevels(std::optional<std::vector<double>> value)
{
    if (value == bandLevels_) return;
    bandLevels_ = std::move(value);
    emit bandLevelsChanged();
}

void MeterModel::setBandPeaks(std::optional<std::vector<double>> value)
{
    if (value == bandPeaks_) return;
    bandPeaks_ = std::move(value);
    emit bandPeaksChanged();
}

void MeterModel::setDominantFrequency(std::optional<double> value)
{
    if (value == dominantFrequency_) return;
    dominantFrequency_ = value;
    emit dominantFrequencyChanged();
}

void MeterModel::setFeedbackWarning(std::optional<FeedbackWarning> value)
{
    if (value == feedbackWarning_) return;
    feedbackWarning_ = value;
    emit feedbackWarningChanged();
}

void MeterModel::setFineDisplays(std::map<SpectrumResolution, BandDisplay> value)
{
    if (value == fineDisplays_) return;
    fineDisplays_ = std::move(value);
    emit fineDisplaysChanged();
}

} // namespace ostrel
