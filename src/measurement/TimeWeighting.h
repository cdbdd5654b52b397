#pragma once

// Time weightings of the meter's exponential detectors.
#include <array>
#include <optional>
#include <string_view>

namespace ostrel {

enum class TimeWeighting { fast, slow };

inline constexpr std::array<TimeWeighting, 2> allTimeWeightings {
    TimeWeighting::fast, TimeWeighting::slow};

std::string_view rawValue(TimeWeighting weighting);
std::optional<TimeWeighting> timeWeightingFromRawValue(std::string_view raw);
// Seconds: 0.125 for Fast, 1.0 for Slow.
double timeConstant(TimeWeighting weighting);
std::string_view symbol(TimeWeighting weighting);
std::string_view title(TimeWeighting weighting);
// The sentence Settings shows under the picker.
std::string_view settingsDescription(TimeWeighting weighting);

} // namespace ostrel
