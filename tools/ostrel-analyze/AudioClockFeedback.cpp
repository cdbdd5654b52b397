#include "ostrel-analyze/AudioClockFeedback.h"

namespace ostrel::analyze {

std::optional<double> AudioClockFeedback::update(
    const MeasurementInterval& interval, double endTime)
{
    if (interval.spectrum) detector_.update(interval.spectrum->peak, addingSeconds(start, endTime));
    const auto& warning = detector_.warning();
    if (!warning) return std::nullopt;
    return warning->frequency;
}

} // namespace ostrel::analyze
