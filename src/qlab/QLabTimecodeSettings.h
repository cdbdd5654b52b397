#pragma once

// What the cue list shows for a running Timecode cue: where its timecode starts and whether
// QLab sends it as MIDI or linear timecode.
#include <cstdint>
#include <optional>
#include <string_view>

#include "qlab/Timecode.h"

namespace ostrel {

struct QLabTimecodeSettings {
    Timecode start;
    std::optional<std::int64_t> outputType; // QLab's index: 0 MTC, 1 LTC

    // Nothing for an output type this program doesn't know.
    std::optional<std::string_view> outputTitle() const noexcept;

    bool operator==(const QLabTimecodeSettings&) const = default;
};

} // namespace ostrel
