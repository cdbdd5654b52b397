#include "exposure/ExposureMeter.h"

#include <algorithm>
#include <cmath>

#include "measurement/SPLMath.h"

namespace ostrel {

namespace {

// Interval boundaries add up in floating point; a start this close to a window's edge is in.
constexpr double edgeTolerance = 1e-6;

} // namespace

ExposureMeter::ExposureMeter(ExposureProfile profile, std::size_t capacity)
    : profile_(std::move(profile)),
      ring_(std::max<std::size_t>(capacity, 1)),
      peakQueue_(ring_.size())
{
}

const ExposureMeter::Entry& ExposureMeter::at(std::int64_t sequence) const
{
    return ring_[static_cast<std::size_t>(sequence % static_cast<std::int64_t>(ring_.size()))];
}

std::int64_t ExposureMeter::oldest() const
{
    return std::max<std::int64_t>(0, count_ - static_cast<std::int64_t>(ring_.size()));
}

void ExposureMeter::reset()
{
    count_ = 0;
    showSeconds_ = 0.0;
    showEnergy_ = 0.0;
    showEnergyCompensation_ = 0.0;
    lcpeakShowPower_ = 0.0;
    hasPeak_ = false;
    windowFirst_ = 0;
    windowSum_ = 0.0;
    windowSeconds_ = 0.0;
    roomFirst_ = 0;
    roomSum_ = 0.0;
    peakFront_ = 0;
    peakCount_ = 0;
    reading_ = {};
    laeqWindowMax_.reset();
    laeqWindowMaxAt_ = 0.0;
    secondsOver_ = 0.0;
}

const ExposureReading& ExposureMeter::ingest(const ExposureSample& sample)
{
    if (!std::isfinite(sample.energyTime) || !std::isfinite(sample.duration)
        || sample.duration <= 0.0 || sample.energyTime < 0.0)
        return reading_;
    const double cPeak
        = std::isfinite(sample.cPeakPower) && sample.cPeakPower > 0.0 ? sample.cPeakPower : 0.0;

    // A full ring gives up its oldest entry; while a window still counts it, the window is cut
    // short by it rather than read from an overwritten slot.
    if (count_ - oldest() == static_cast<std::int64_t>(ring_.size())) {
        const std::int64_t leaving = oldest();
        const Entry& entry = at(leaving);
        if (windowFirst_ == leaving) {
            windowSum_ -= entry.energyTime;
            windowSeconds_ -= entry.duration;
            ++windowFirst_;
        }
        if (roomFirst_ == leaving) {
            roomSum_ -= entry.energyTime;
            ++roomFirst_;
        }
        if (peakCount_ > 0 && peakQueue_[peakFront_] == leaving) {
            peakFront_ = (peakFront_ + 1) % peakQueue_.size();
            --peakCount_;
        }
    }

    const std::int64_t sequence = count_;
    ring_[static_cast<std::size_t>(sequence % static_cast<std::int64_t>(ring_.size()))]
        = Entry {showSeconds_, sample.duration, sample.energyTime, cPeak};
    ++count_;
    showSeconds_ += sample.duration;
    // Compensated: a show runs for hours, longer than the ring that re-sums the windows.
    const double term = sample.energyTime - showEnergyCompensation_;
    const double total = showEnergy_ + term;
    showEnergyCompensation_ = (total - showEnergy_) - term;
    showEnergy_ = total;
    if (!hasPeak_ || cPeak > lcpeakShowPower_) lcpeakShowPower_ = cPeak;
    hasPeak_ = true;

    windowSum_ += sample.energyTime;
    windowSeconds_ += sample.duration;
    roomSum_ += sample.energyTime;
    const double window = profile_.windowSeconds;
    advance(windowFirst_, windowSum_, window);
    advance(roomFirst_, roomSum_, window - std::min(roomHorizonSeconds, window));
    pushPeak(sequence);

    if (count_ % resumPeriod == 0) resum();
    read(SPLMath::decibels(cPeak));
    // The summary of the show follows the profile in force at each interval.
    const double level = *reading_.laeqWindow;
    if (level > profile_.limit) secondsOver_ += sample.duration;
    if (!laeqWindowMax_ || level > *laeqWindowMax_) {
        laeqWindowMax_ = level;
        laeqWindowMaxAt_ = showSeconds_;
    }
    return reading_;
}

void ExposureMeter::advance(std::int64_t& first, double& sum, double span)
{
    const double edge = showSeconds_ - span - edgeTolerance;
    const bool isWindow = &first == &windowFirst_;
    while (first < count_ && at(first).start < edge) {
        sum -= at(first).energyTime;
        if (isWindow) windowSeconds_ -= at(first).duration;
        ++first;
    }
    if (isWindow) {
        while (peakCount_ > 0 && peakQueue_[peakFront_] < windowFirst_) {
            peakFront_ = (peakFront_ + 1) % peakQueue_.size();
            --peakCount_;
        }
    }
}

void ExposureMeter::pushPeak(std::int64_t sequence)
{
    const double value = at(sequence).cPeakPower;
    while (peakCount_ > 0) {
        const std::size_t back = (peakFront_ + peakCount_ - 1) % peakQueue_.size();
        if (at(peakQueue_[back]).cPeakPower > value) break;
        --peakCount_;
    }
    peakQueue_[(peakFront_ + peakCount_) % peakQueue_.size()] = sequence;
    ++peakCount_;
}

void ExposureMeter::resum()
{
    windowSum_ = 0.0;
    windowSeconds_ = 0.0;
    for (std::int64_t k = windowFirst_; k < count_; ++k) {
        windowSum_ += at(k).energyTime;
        windowSeconds_ += at(k).duration;
    }
    roomSum_ = 0.0;
    for (std::int64_t k = roomFirst_; k < count_; ++k)
        roomSum_ += at(k).energyTime;
}

void ExposureMeter::rebuildPeaks()
{
    peakFront_ = 0;
    peakCount_ = 0;
    for (std::int64_t k = windowFirst_; k < count_; ++k)
        pushPeak(k);
}

void ExposureMeter::setProfile(const ExposureProfile& profile)
{
    profile_ = profile;
    const double window = profile_.windowSeconds;
    const double roomSpan = window - std::min(roomHorizonSeconds, window);
    windowFirst_ = oldest();
    while (windowFirst_ < count_ && at(windowFirst_).start < showSeconds_ - window - edgeTolerance)
        ++windowFirst_;
    roomFirst_ = oldest();
    while (roomFirst_ < count_ && at(roomFirst_).start < showSeconds_ - roomSpan - edgeTolerance)
        ++roomFirst_;
    resum();
    rebuildPeaks();
    read(reading_.lcpeak);
}

void ExposureMeter::read(std::optional<double> lcpeak)
{
    ExposureReading reading;
    reading.showSeconds = showSeconds_;
    if (count_ == 0) {
        reading_ = reading;
        return;
    }
    const double limitPower = SPLMath::power(profile_.limit);
    reading.lcpeak = lcpeak;
    reading.lcpeakShow = SPLMath::decibels(lcpeakShowPower_);
    reading.laeqShow = SPLMath::decibels(showEnergy_ / showSeconds_);
    reading.dosePercent
        = 100.0 * showEnergy_ / (ExposureProfile::dailyReferenceSeconds * SPLMath::power(85.0));
    double roomEnergy = 0.0;
    double allowance = 0.0;
    if (profile_.isDailyExposure) {
        reading.laeqWindow = SPLMath::decibels(showEnergy_ / profile_.windowSeconds);
        reading.windowSeconds = showSeconds_;
        reading.lcpeakWindow = reading.lcpeakShow;
        reading.roomSeconds = roomHorizonSeconds;
        roomEnergy = showEnergy_;
        allowance = profile_.windowSeconds * limitPower;
    } else {
        reading.laeqWindow = SPLMath::decibels(windowSum_ / windowSeconds_);
        reading.windowSeconds = windowSeconds_;
        if (peakCount_ > 0)
            reading.lcpeakWindow = SPLMath::decibels(at(peakQueue_[peakFront_]).cPeakPower);
        reading.roomSeconds = std::min(roomHorizonSeconds, profile_.windowSeconds);
        roomEnergy = roomSum_;
        allowance = profile_.windowSeconds * limitPower;
    }
    const double bracket = allowance - roomEnergy;
    if (bracket > 0.0) reading.room = 10.0 * std::log10(bracket / reading.roomSeconds);

    const double level = *reading.laeqWindow;
    if (level > profile_.limit)
        reading.step = ExposureStep::overLimit;
    else if (level > profile_.limit - profile_.margin)
        reading.step = ExposureStep::withinMargin;
    reading_ = reading;
}

} // namespace ostrel
