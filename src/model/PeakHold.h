#pragma once

// The peak line above a spectrum display: each band's highest recent level, held long enough to
// read and then falling back towards the live level.
#include <vector>

#include "common/Date.h"

namespace ostrel {

struct PeakHold {
    static constexpr double holdTime = 1.5; // seconds a peak stays put after it was set
    static constexpr double fallRate = 10.0; // dB per second once the hold is over

    std::vector<double> peaks; // dB, one per band
    std::vector<Date> times; // when each peak was set

    // `elapsed` is the seconds since the previous update, which sets how far a peak falls.
    void update(const std::vector<double>& levels, Date now, double elapsed);

    bool operator==(const PeakHold&) const = default;
};

} // namespace ostrel
