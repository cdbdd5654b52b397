#pragma once

// The exposure after an interval: the window's level against the profile's limit, the peak,
// the show so far and how loud the next minutes may be.
#include <optional>

namespace ostrel {

enum class ExposureStep { withinLimit, withinMargin, overLimit };

struct ExposureReading {
    double showSeconds = 0.0;
    // The rolling LAeq over the profile's window (the time so far until it has passed), or for
    // a daily-exposure profile the exposure the show amounts to over the reference day.
    std::optional<double> laeqWindow;
    double windowSeconds = 0.0; // how much of the window the intervals cover
    std::optional<double> lcpeak; // this interval
    std::optional<double> lcpeakWindow;
    std::optional<double> lcpeakShow;
    std::optional<double> laeqShow;
    double dosePercent = 0.0; // of 85 dB(A) for 8 hours
    // The highest average level the next minutes may have and keep the window at the limit;
    // absent when the limit is out of reach whatever follows.
    std::optional<double> room;
    double roomSeconds = 0.0; // how long "the next minutes" are
    ExposureStep step = ExposureStep::withinLimit;

    bool operator==(const ExposureReading&) const = default;
};

} // namespace ostrel
