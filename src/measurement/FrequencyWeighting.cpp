#include "measurement/FrequencyWeighting.h"

#include "common/RawValues.h"

namespace ostrel {

std::string_view rawValue(FrequencyWeighting weighting)
{
    switch (weighting) {
    case FrequencyWeighting::a:
        return "A";
    case FrequencyWeighting::c:
        return "C";
    case FrequencyWeighting::z:
        return "Z";
    }
    return "A";
}

std::optional<FrequencyWeighting> frequencyWeightingFromRawValue(std::string_view raw)
{
    return RawValues::find(allFrequencyWeightings, raw, [](auto value) { return rawValue(value); });
}

std::string_view symbol(FrequencyWeighting weighting)
{
    return rawValue(weighting);
}

std::string_view summary(FrequencyWeighting weighting)
{
    switch (weighting) {
    case FrequencyWeighting::a:
        return "Approximates human hearing at moderate levels. Standard for noise exposure.";
    case FrequencyWeighting::c:
        return "Flatter response that includes low frequencies. Useful for loud music and peaks.";
    case FrequencyWeighting::z:
        return "No weighting. The unaltered acoustic level.";
    }
    return {};
}

} // namespace ostrel
