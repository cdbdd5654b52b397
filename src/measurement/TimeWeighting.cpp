#include "measurement/TimeWeighting.h"

#include "common/RawValues.h"

namespace ostrel {

std::string_view rawValue(TimeWeighting weighting)
{
    return weighting == TimeWeighting::fast ? "fast" : "slow";
}

std::optional<TimeWeighting> timeWeightingFromRawValue(std::string_view raw)
{
    return RawValues::find(allTimeWeightings, raw, [](auto value) { return rawValue(value); });
}

double timeConstant(TimeWeighting weighting)
{
    return weighting == TimeWeighting::fast ? 0.125 : 1.0;
}

std::string_view symbol(TimeWeighting weighting)
{
    return weighting == TimeWeighting::fast ? "FAST" : "SLOW";
}

std::string_view title(TimeWeighting weighting)
{
    return weighting == TimeWeighting::fast ? "Fast" : "Slow";
}

std::string_view settingsDescription(TimeWeighting weighting)
{
    return weighting == TimeWeighting::fast
        ? "Fast follows changes within an eighth of a second."
        : "Slow averages over one second for a steadier reading.";
}

} // namespace ostrel
