#pragma once

// A reduced picture of a whole recorded show for the replay scrubber: the loudest level and the
// mean fine spectrum of each column, and the running statistics every 600 frames, so that a seek
// anywhere adds up at most 599 frames. Built away from the main thread from its own copy of the
// frames.
#include <cstdint>
#include <functional>
#include <vector>

#include "measurement/LevelStatistics.h"
#include "sessions/RecordingFrames.h"

namespace ostrel {

struct SessionOverview {
    static constexpr std::int64_t maxColumns = 1600;
    static constexpr std::int64_t checkpointSpacing = 600;
    // How often the build looks for cancellation: often enough to stop within a few
    // milliseconds, rarely enough to cost nothing.
    static constexpr std::int64_t cancelCheckSpacing = 4096;

    std::int64_t columns = 0;
    std::vector<double> levels; // one per column: its loudest level
    std::vector<float> spectrogram; // columns x fine bands in dB, column after column
    std::vector<LevelStatistics> checkpoints; // [k]: the statistics of frames 0 ..< 600 k

    float spectrogramLevel(std::int64_t column, std::int64_t row) const;

    // Stops early, with what it has, when `isCancelled` says so.
    static SessionOverview build(
        const RecordingFrames& frames, const std::function<bool()>& isCancelled = {});
};

} // namespace ostrel
