#include "qlab/Timecode.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

namespace ostrel {

namespace {

std::int64_t wrapped(std::int64_t frame, TimecodeRate rate) noexcept
{
    const auto day = Timecode::frameCountPerDay(rate);
    return ((frame % day) + day) % day;
}

std::string_view trimmed(std::string_view text) noexcept
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> pieces(std::string_view text)
{
    std::vector<std::string_view> result;
    std::size_t start = 0;
    for (std::size_t index = 0; index <= text.size(); ++index) {
        if (index < text.size() && text[index] != ':' && text[index] != ';') continue;
        if (index > start) result.push_back(text.substr(start, index - start));
        start = index + 1;
    }
    return result;
}

// from_chars takes a minus sign but not a plus; a reported "+5" should still read as 5.
std::string_view withoutPlus(std::string_view text) noexcept
{
    if (text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

std::optional<int> integer(std::string_view text) noexcept
{
    text = withoutPlus(text);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc {} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<double> decimal(std::string_view text) noexcept
{
    text = withoutPlus(text);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc {} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// A whole count of frames, reduced into one day while still a double, so huge inputs stay exact.
std::int64_t framesWithinDay(double count, TimecodeRate rate) noexcept
{
    return static_cast<std::int64_t>(
        std::fmod(count, static_cast<double>(Timecode::frameCountPerDay(rate))));
}

std::int64_t labelledCount(
    int hours, int minutes, int seconds, int frames, TimecodeRate rate) noexcept
{
    const std::int64_t nominal = TimecodeRates::nominalFPS(rate);
    const std::int64_t totalMinutes = std::int64_t {hours} * 60 + minutes;
    const std::int64_t count = (totalMinutes * 60 + seconds) * nominal + frames;
    if (!TimecodeRates::isDropFrame(rate)) return count;
    // SMPTE drop frame: two labels skipped each minute, except every tenth minute.
    return count - 2 * (totalMinutes - totalMinutes / 10);
}

} // namespace

Timecode::Timecode(std::int64_t frame, TimecodeRate rate) noexcept
    : m_frame(wrapped(frame, rate)), m_rate(rate)
{
}

Timecode::Timecode(int hours, int minutes, int seconds, int frames, TimecodeRate rate) noexcept
    : Timecode(labelledCount(hours, minutes, seconds, frames, rate), rate)
{
}

std::optional<Timecode> Timecode::fromQLabString(std::string_view text, TimecodeRate rate)
{
    text = trimmed(text);
    const auto parts = pieces(text);
    const int nominal = TimecodeRates::nominalFPS(rate);

    if (parts.size() == 3 || parts.size() == 4) {
        int values[4] = {0, 0, 0, 0};
        for (std::size_t index = 0; index < parts.size(); ++index) {
            const auto value = integer(parts[index]);
            if (!value) return std::nullopt;
            values[index] = *value;
        }
        // Hours go unchecked on purpose: past 24 they wrap like any other count.
        if (values[1] >= 60 || values[2] >= 60 || values[3] >= nominal) return std::nullopt;
        return Timecode(values[0], values[1], values[2], values[3], rate);
    }

    // QLab may report the start as plain seconds.
    const auto seconds = decimal(text);
    if (!seconds || !std::isfinite(*seconds) || *seconds < 0) return std::nullopt;
    return Timecode(framesWithinDay(std::round(*seconds * nominal), rate), rate);
}

std::int64_t Timecode::frameCountPerDay(TimecodeRate rate) noexcept
{
    const std::int64_t full = std::int64_t {TimecodeRates::nominalFPS(rate)} * 86'400;
    // 18 frames for each of the 144 ten-minute blocks of a day.
    return TimecodeRates::isDropFrame(rate) ? full - 2'592 : full;
}

Timecode Timecode::advanced(double seconds) const noexcept
{
    // Wall-clock seconds run at the actual rate, not the nominal one the labels count in.
    const double count = std::floor(std::max(0.0, seconds) * TimecodeRates::actualFPS(m_rate));
    if (!std::isfinite(count)) return *this;
    return Timecode(m_frame + framesWithinDay(count, m_rate), m_rate);
}

Timecode::Components Timecode::components() const noexcept
{
    const std::int64_t nominal = TimecodeRates::nominalFPS(m_rate);
    std::int64_t label = m_frame;
    if (TimecodeRates::isDropFrame(m_rate)) {
        const std::int64_t block = 600 * nominal - 18;
        const std::int64_t blocks = m_frame / block;
        const std::int64_t rest = m_frame - blocks * block;
        label += 18 * blocks;
        if (rest >= 3) label += 2 * ((rest - 2) / (60 * nominal - 2));
    }
    return Components {
        static_cast<int>(label / (3600 * nominal) % 24),
        static_cast<int>(label / (60 * nominal) % 60),
        static_cast<int>(label / nominal % 60),
        static_cast<int>(label % nominal),
    };
}

std::string Timecode::formatted() const
{
    const auto parts = components();
    const char separator = TimecodeRates::isDropFrame(m_rate) ? ';' : ':';
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d%c%02d", parts.hours, parts.minutes,
        parts.seconds, separator, parts.frames);
    return text;
}

} // namespace ostrel
