#pragma once

// A position in a Timecode cue's day, shown beside the cue list while QLab sends timecode.
// A frame count at a rate, so drop-frame arithmetic happens in one place.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "qlab/TimecodeRate.h"

namespace ostrel {

class Timecode {
public:
    struct Components {
        int hours = 0;
        int minutes = 0;
        int seconds = 0;
        int frames = 0;

        bool operator==(const Components&) const = default;
    };

    // Any count is accepted; it wraps into one day, negatives from the end of the day.
    Timecode(std::int64_t frame, TimecodeRate rate) noexcept;
    // Labels that drop frame skips (;00 and ;01 of most minutes) land two frames early.
    Timecode(int hours, int minutes, int seconds, int frames, TimecodeRate rate) noexcept;

    // Reads "HH:MM:SS:FF", "HH:MM:SS" or plain seconds as QLab reports a start time.
    static std::optional<Timecode> fromQLabString(std::string_view text, TimecodeRate rate);

    static std::int64_t frameCountPerDay(TimecodeRate rate) noexcept;

    std::int64_t frame() const noexcept { return m_frame; }
    TimecodeRate rate() const noexcept { return m_rate; }

    // `seconds` is wall-clock time; anything negative or not finite leaves the time code put.
    Timecode advanced(double seconds) const noexcept;
    Components components() const noexcept;
    std::string formatted() const;

    bool operator==(const Timecode&) const = default;

private:
    std::int64_t m_frame;
    TimecodeRate m_rate;
};

} // namespace ostrel
