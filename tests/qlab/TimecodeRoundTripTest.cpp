#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "qlab/Timecode.h"

using namespace ostrel;

namespace {

// Drop-frame timecode never shows frames 0 and 1 at the start of a minute that isn't a tenth.
bool isLabelled(TimecodeRate rate, int minutes, int seconds, int frames)
{
    return !TimecodeRates::isDropFrame(rate) || seconds != 0 || frames >= 2 || minutes % 10 == 0;
}

std::string label(int hours, int minutes, int seconds, int frames)
{
    return std::to_string(hours) + ":" + std::to_string(minutes) + ":" + std::to_string(seconds)
        + ":" + std::to_string(frames);
}

} // namespace

TEST(TimecodeRoundTrip, EveryLabelOfTheFirstHourComesBackFromItsFrame)
{
    for (const auto rate : TimecodeRates::all) {
        const int nominal = TimecodeRates::nominalFPS(rate);
        std::int64_t previous = -1;
        for (int minutes = 0; minutes < 60; ++minutes)
            for (int seconds = 0; seconds < 60; ++seconds)
                for (int frames = 0; frames < nominal; ++frames) {
                    if (!isLabelled(rate, minutes, seconds, frames)) continue;
                    const Timecode timecode(0, minutes, seconds, frames, rate);
                    ASSERT_EQ(
                        timecode.components(), (Timecode::Components {0, minutes, seconds, frames}))
                        << TimecodeRates::title(rate) << " " << label(0, minutes, seconds, frames);
                    // Labels in order are consecutive frames, with nothing left out.
                    ASSERT_EQ(timecode.frame(), previous + 1)
                        << TimecodeRates::title(rate) << " " << label(0, minutes, seconds, frames);
                    previous = timecode.frame();
                }
    }
}

TEST(TimecodeRoundTrip, EveryMinuteBoundaryOfTheFirstHourAtDropRates)
{
    for (const auto rate : {TimecodeRate::fps30Drop, TimecodeRate::fps2997Drop}) {
        for (int minutes = 1; minutes < 60; ++minutes) {
            const int first = minutes % 10 == 0 ? 0 : 2;
            const Timecode start(0, minutes, 0, first, rate);
            EXPECT_EQ(start.components(), (Timecode::Components {0, minutes, 0, first}))
                << TimecodeRates::title(rate) << " minute " << minutes;
            const Timecode before(start.frame() - 1, rate);
            EXPECT_EQ(before.components(), (Timecode::Components {0, minutes - 1, 59, 29}))
                << TimecodeRates::title(rate) << " minute " << minutes;
        }
    }
}

TEST(TimecodeRoundTrip, LabelsAcrossTheDayComeBackFromTheirFrames)
{
    for (const auto rate : TimecodeRates::all) {
        const int nominal = TimecodeRates::nominalFPS(rate);
        for (int hours = 0; hours < 24; ++hours)
            for (int minutes = 0; minutes < 60; minutes += 7)
                for (const int seconds : {0, 1, 29, 59})
                    for (const int frames : {0, 1, 2, nominal / 2, nominal - 1}) {
                        if (!isLabelled(rate, minutes, seconds, frames)) continue;
                        const Timecode timecode(hours, minutes, seconds, frames, rate);
                        EXPECT_EQ(timecode.components(),
                            (Timecode::Components {hours, minutes, seconds, frames}))
                            << TimecodeRates::title(rate) << " "
                            << label(hours, minutes, seconds, frames);
                    }
    }
}

TEST(TimecodeRoundTrip, EveryFrameOfTheDayComesBackFromItsLabel)
{
    for (const auto rate : TimecodeRates::all) {
        const auto day = Timecode::frameCountPerDay(rate);
        for (std::int64_t frame = 0; frame < day; ++frame) {
            const Timecode timecode(frame, rate);
            const auto parts = timecode.components();
            const Timecode rebuilt(parts.hours, parts.minutes, parts.seconds, parts.frames, rate);
            if (rebuilt.frame() != frame) {
                FAIL() << TimecodeRates::title(rate) << " frame " << frame << " reads "
                       << timecode.formatted() << " which builds frame " << rebuilt.frame();
            }
        }
    }
}

TEST(TimecodeRoundTrip, FormattedTextParsesBackToTheSameTimecode)
{
    for (const auto rate : TimecodeRates::all) {
        const auto day = Timecode::frameCountPerDay(rate);
        for (std::int64_t frame = 0; frame < day; frame += 997) {
            const Timecode timecode(frame, rate);
            const auto parsed = Timecode::fromQLabString(timecode.formatted(), rate);
            ASSERT_TRUE(parsed) << TimecodeRates::title(rate) << " " << timecode.formatted();
            EXPECT_EQ(*parsed, timecode)
                << TimecodeRates::title(rate) << " " << timecode.formatted();
        }
        const Timecode last(day - 1, rate);
        EXPECT_EQ(Timecode::fromQLabString(last.formatted(), rate), last)
            << TimecodeRates::title(rate);
    }
}

TEST(TimecodeRoundTrip, ParsedTextFormatsBackToTheSameText)
{
    for (const auto rate : TimecodeRates::all) {
        const char separator = TimecodeRates::isDropFrame(rate) ? ';' : ':';
        const int nominal = TimecodeRates::nominalFPS(rate);
        for (const auto* base : {"00:00:00", "00:09:59", "00:10:00", "01:23:45", "23:59:59"}) {
            for (const int frames : {2, nominal - 1}) {
                const std::string text = std::string(base) + separator + (frames < 10 ? "0" : "")
                    + std::to_string(frames);
                const auto parsed = Timecode::fromQLabString(text, rate);
                ASSERT_TRUE(parsed) << TimecodeRates::title(rate) << " " << text;
                EXPECT_EQ(parsed->formatted(), text) << TimecodeRates::title(rate);
            }
        }
    }
}
