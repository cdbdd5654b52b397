#include "model/PeakHold.h"

#include <algorithm>

namespace ostrel {

void PeakHold::update(const std::vector<double>& levels, Date now, double elapsed)
{
    // A new band layout makes the old peaks meaningless, so start over from the live levels.
    if (peaks.size() != levels.size()) {
        peaks = levels;
        times.assign(levels.size(), now);
        return;
    }
    for (std::size_t band = 0; band < levels.size(); ++band) {
        if (peaks[band] <= levels[band]) {
            peaks[band] = levels[band];
            times[band] = now;
        } else if (secondsBetween(times[band], now) > holdTime) {
            peaks[band] = std::max(peaks[band] - fallRate * elapsed, levels[band]);
        }
    }
}

} // namespace ostrel
