#include "measurement/CalibrationCollector.h"

#include <algorithm>

#include "measurement/SPLMath.h"

namespace ostrel {

std::optional<std::string_view> CalibrationResult::failureMessage() const
{
    switch (kind) {
    case Kind::success:
        return std::nullopt;
    case Kind::noSignal:
        return "Ostrel Live couldn't hear the calibrator. Check that it's switched on and the "
               "microphone is fully inserted.";
    case Kind::unstable:
        return "The level wasn't steady. Make sure the room is quiet and the calibrator isn't "
               "moving.";
    case Kind::overload:
        return "The input is clipping. Turn down the gain on your audio interface and try again.";
    }
    return std::nullopt;
}

void CalibrationCollector::add(const MeasurementInterval& interval)
{
    elapsed_ += interval.duration();
    // Only an interval that ends after the settle time counts.
    if (interval.sampleCount < 1 || elapsed_ <= settleTime) return;
    rawEnergy_ += interval.rawEnergy;
    sampleCount_ += interval.sampleCount;
    shortTermLevels_.push_back(interval.rawLevelDBFS());
    clipped_ = clipped_ || interval.clipped;
}

double CalibrationCollector::measuredDuration() const
{
    return std::max(elapsed_ - settleTime, 0.0);
}

CalibrationResult CalibrationCollector::result(double referenceLevel) const
{
    using Kind = CalibrationResult::Kind;
    if (sampleCount_ < 1) return CalibrationResult::failure(Kind::noSignal);
    // Overload outranks everything else.
    if (clipped_) return CalibrationResult::failure(Kind::overload);
    const double level = SPLMath::decibels(rawEnergy_ / static_cast<double>(sampleCount_));
    if (!(level > minimumLevelDBFS)) return CalibrationResult::failure(Kind::noSignal);
    if (!shortTermLevels_.empty()) {
        const auto [lowest, highest]
            = std::minmax_element(shortTermLevels_.begin(), shortTermLevels_.end());
        if (*highest - *lowest > maximumSpread) return CalibrationResult::failure(Kind::unstable);
    }
    return CalibrationResult::success(SPLMath::calibrationOffset(referenceLevel, level), level);
}

} // namespace ostrel
