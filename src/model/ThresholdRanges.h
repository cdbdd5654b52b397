#pragma once

// The bounds of the two colour-threshold steppers. Each moves with the other threshold, so the
// elevated level stays below the high one.
namespace ostrel {

struct ThresholdRange {
    double lower;
    double upper;

    bool operator==(const ThresholdRange&) const = default;
};

namespace ThresholdRanges {

inline constexpr double lowest = 40.0;
inline constexpr double highest = 140.0;
inline constexpr double step = 1.0;

// 40 ... high - 1. A high threshold below 41 only comes from a store edited by hand; the range
// can't be formed and the process stops.
ThresholdRange elevated(double highThreshold);
// elevated + 1 ... 140; an elevated threshold above 139 stops the process likewise.
ThresholdRange high(double elevatedThreshold);

} // namespace ThresholdRanges
} // namespace ostrel
