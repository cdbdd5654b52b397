#include <gtest/gtest.h>

#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"
#include "support/RecordedFrameBytes.h"

using namespace ostrel;

namespace {

using Times = testsupport::FrameTimes;

QByteArray fileBytes(const std::vector<Times>& times)
{
    return testsupport::recordedFrameBytes(times);
}

RecordingFrames frames(const std::vector<Times>& times)
{
    auto result = RecordingFrames::fromBytes(fileBytes(times));
    EXPECT_TRUE(result.has_value());
    return std::move(*result);
}

const std::vector<Times>& steady = testsupport::steadyFrameTimes;

} // namespace

TEST(RecordingFrames, HeaderOnlyFileHasNoFramesNoDurationAndFindsNothing)
{
    const RecordingFrames empty = frames({});
    EXPECT_EQ(empty.count(), 0);
    EXPECT_EQ(empty.duration(), 0.0);
    EXPECT_FALSE(empty.lastIndexAtOrBefore(0.0).has_value());
    EXPECT_FALSE(empty.lastIndexAtOrBefore(1e9).has_value());
    EXPECT_FALSE(empty.firstIndexAtOrAfterWallTime(-1e9).has_value());
    EXPECT_FALSE(empty.firstIndexAtOrAfterWallTime(0.0).has_value());
    EXPECT_FALSE(empty.frame(0, true).has_value());
}

TEST(RecordingFrames, ShortOrForeignFilesAreRefused)
{
    EXPECT_FALSE(RecordingFrames::fromBytes(RecordingFormat::header().left(31)).has_value());
    QByteArray otherBands = fileBytes(steady);
    otherBands[16] = 30;
    EXPECT_FALSE(RecordingFrames::fromBytes(otherBands).has_value());
}

TEST(RecordingFrames, LastFrameCutShortIsIgnored)
{
    QByteArray bytes = fileBytes(steady);
    bytes.chop(1);
    const auto cut = RecordingFrames::fromBytes(bytes);
    ASSERT_TRUE(cut.has_value());
    EXPECT_EQ(cut->count(), 3);
    EXPECT_EQ(cut->duration(), 0.3);
    EXPECT_EQ(cut->lastIndexAtOrBefore(10.0), 2);
    EXPECT_FALSE(cut->frame(3, false).has_value());
    EXPECT_FALSE(cut->audioTime(3).has_value());
}

TEST(RecordingFrames, FramesAndTimesAreReadByIndex)
{
    const RecordingFrames recording = frames(steady);
    EXPECT_EQ(recording.count(), 4);
    EXPECT_EQ(recording.audioTime(0), 0.1);
    EXPECT_EQ(recording.wallTime(3), 0.41);
    EXPECT_FALSE(recording.audioTime(-1).has_value());
    EXPECT_FALSE(recording.wallTime(4).has_value());

    const auto withSpectrum = recording.frame(1, true);
    const auto without = recording.frame(1, false);
    ASSERT_TRUE(withSpectrum && without);
    EXPECT_TRUE(withSpectrum->interval.spectrum.has_value());
    EXPECT_FALSE(without->interval.spectrum.has_value());
    EXPECT_EQ(without->audioTime, 0.2);
    EXPECT_EQ(without->interval.sampleCount, 4800);
}

TEST(RecordingFrames, LastIndexBeforeTheFirstFrameIsNothing)
{
    const RecordingFrames recording = frames(steady);
    EXPECT_FALSE(recording.lastIndexAtOrBefore(0.0).has_value());
    EXPECT_FALSE(recording.lastIndexAtOrBefore(0.0999).has_value());
}

TEST(RecordingFrames, LastIndexAtAFramesTimeIsThatFrame)
{
    const RecordingFrames recording = frames(steady);
    EXPECT_EQ(recording.lastIndexAtOrBefore(0.1), 0);
    EXPECT_EQ(recording.lastIndexAtOrBefore(0.3), 2);
    EXPECT_EQ(recording.lastIndexAtOrBefore(0.35), 2);
    EXPECT_EQ(recording.lastIndexAtOrBefore(0.4), 3);
    EXPECT_EQ(recording.lastIndexAtOrBefore(99.0), 3);
}

TEST(RecordingFrames, LastIndexOfEqualTimesIsTheLastOfThem)
{
    const RecordingFrames recording
        = frames({{0.1, 0.1}, {0.2, 0.2}, {0.2, 0.3}, {0.2, 0.4}, {0.3, 0.5}});
    EXPECT_EQ(recording.lastIndexAtOrBefore(0.2), 3);
    EXPECT_EQ(recording.lastIndexAtOrBefore(0.25), 3);
    EXPECT_EQ(recording.lastIndexAtOrBefore(0.19), 0);
}

TEST(RecordingFrames, FirstIndexAtOrAfterAWallTime)
{
    const RecordingFrames recording = frames(steady);
    EXPECT_EQ(recording.firstIndexAtOrAfterWallTime(-5.0), 0);
    EXPECT_EQ(recording.firstIndexAtOrAfterWallTime(0.12), 0);
    EXPECT_EQ(recording.firstIndexAtOrAfterWallTime(0.13), 1);
    EXPECT_EQ(recording.firstIndexAtOrAfterWallTime(0.33), 2);
    EXPECT_EQ(recording.firstIndexAtOrAfterWallTime(0.41), 3);
    EXPECT_FALSE(recording.firstIndexAtOrAfterWallTime(0.42).has_value());
}

TEST(RecordingFrames, FirstIndexOfEqualWallTimesIsTheFirstOfThem)
{
    const RecordingFrames recording = frames({{0.1, 1.0}, {0.2, 2.0}, {0.3, 2.0}, {0.4, 3.0}});
    EXPECT_EQ(recording.firstIndexAtOrAfterWallTime(2.0), 1);
    EXPECT_EQ(recording.firstIndexAtOrAfterWallTime(1.5), 1);
}

TEST(RecordingFrames, SearchesFindEveryFrameOfALongRecording)
{
    std::vector<Times> times;
    for (int i = 1; i <= 1001; ++i)
        times.push_back({i * 0.1, i * 0.1 + 0.004});
    const RecordingFrames recording = frames(times);
    EXPECT_DOUBLE_EQ(recording.duration(), 100.1);
    for (qsizetype i = 0; i < recording.count(); ++i) {
        const double audio = *recording.audioTime(i);
        const double wall = *recording.wallTime(i);
        ASSERT_EQ(recording.lastIndexAtOrBefore(audio), i);
        ASSERT_EQ(recording.lastIndexAtOrBefore(audio + 0.05), i);
        ASSERT_EQ(recording.firstIndexAtOrAfterWallTime(wall), i);
        ASSERT_EQ(recording.firstIndexAtOrAfterWallTime(wall - 0.05), i);
    }
}
