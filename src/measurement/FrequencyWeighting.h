#pragma once

// Frequency weightings of the meter, IEC 61672-1. Stored and sent by their raw values.
#include <array>
#include <optional>
#include <string_view>

namespace ostrel {

enum class FrequencyWeighting { a, c, z };

inline constexpr std::array<FrequencyWeighting, 3> allFrequencyWeightings {
    FrequencyWeighting::a, FrequencyWeighting::c, FrequencyWeighting::z};

std::string_view rawValue(FrequencyWeighting weighting);
std::optional<FrequencyWeighting> frequencyWeightingFromRawValue(std::string_view raw);
std::string_view symbol(FrequencyWeighting weighting);
std::string_view summary(FrequencyWeighting weighting);

} // namespace ostrel
