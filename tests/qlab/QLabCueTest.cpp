#include <gtest/gtest.h>

#include <QJsonDocument>

#include "common/ReferenceDate.h"
#include "qlab/QLabCue.h"

using namespace ostrel;

namespace {

const Date base = addingSeconds(Date {}, 1'700'000'000.0);

Date at(double seconds)
{
    return addingSeconds(base, seconds);
}

QLabCue cue(const QString& type = "Audio")
{
    QLabCue result;
    result.id = "A1";
    result.type = type;
    result.startedAt = base;
    return result;
}

} // namespace

TEST(QLabCue, GroupIsExactlyTheTypeGroup)
{
    EXPECT_TRUE(cue("Group").isGroup());
    EXPECT_FALSE(cue("group").isGroup());
    EXPECT_FALSE(cue("Cue List").isGroup());
}

TEST(QLabCue, TimecodeCueIsFoundInAnyCase)
{
    EXPECT_TRUE(cue("Timecode").isTimecodeCue());
    EXPECT_TRUE(cue("MIDI TIMECODE").isTimecodeCue());
    EXPECT_FALSE(cue("Audio").isTimecodeCue());
    EXPECT_FALSE(cue("Time code").isTimecodeCue());
}

TEST(QLabCue, ReportedRateIsOnlyOneOfQLabsEight)
{
    QLabCue timecode = cue("Timecode");
    EXPECT_FALSE(timecode.reportedTimecodeRate().has_value());
    timecode.timecodeRateIndex = 3;
    EXPECT_EQ(timecode.reportedTimecodeRate(), TimecodeRate::fps30Drop);
    timecode.timecodeRateIndex = 0;
    EXPECT_EQ(timecode.reportedTimecodeRate(), TimecodeRate::fps24);
    timecode.timecodeRateIndex = 8;
    EXPECT_FALSE(timecode.reportedTimecodeRate().has_value());
    timecode.timecodeRateIndex = -1;
    EXPECT_FALSE(timecode.reportedTimecodeRate().has_value());
}

TEST(QLabCue, DisplayNameFallsBackToTheType)
{
    QLabCue audio = cue("Audio");
    EXPECT_EQ(audio.displayName(), "Untitled Audio Cue");
    audio.name = "Thunder";
    EXPECT_EQ(audio.displayName(), "Thunder");
}

TEST(QLabCue, ElapsedWithoutASampleCountsFromStart)
{
    const QLabCue running = cue();
    EXPECT_DOUBLE_EQ(running.elapsed(at(12.5)), 12.5);
    EXPECT_EQ(running.elapsed(at(-3)), 0.0);
}

TEST(QLabCue, ElapsedCarriesTheSampleOnByWallTime)
{
    QLabCue running = cue();
    running.actionElapsed = 4.0;
    running.sampledAt = at(10);
    EXPECT_DOUBLE_EQ(running.elapsed(at(11.5)), 5.5);
    EXPECT_DOUBLE_EQ(running.elapsed(at(9)), 4.0);
}

TEST(QLabCue, ElapsedIsFrozenWhilePaused)
{
    QLabCue paused = cue();
    paused.actionElapsed = 4.0;
    paused.sampledAt = at(10);
    paused.isPaused = true;
    EXPECT_EQ(paused.elapsed(at(100)), 4.0);
}

TEST(QLabCue, ElapsedNeedsBothTheSampleAndItsDate)
{
    QLabCue half = cue();
    half.actionElapsed = 4.0;
    EXPECT_DOUBLE_EQ(half.elapsed(at(7)), 7.0);
}

TEST(QLabCue, RemainingNeedsADurationAboveZero)
{
    QLabCue running = cue();
    EXPECT_FALSE(running.remaining(at(1)).has_value());
    running.duration = 0;
    EXPECT_FALSE(running.remaining(at(1)).has_value());
    running.duration = 30;
    EXPECT_DOUBLE_EQ(*running.remaining(at(10)), 20.0);
    EXPECT_EQ(*running.remaining(at(45)), 0.0);
}

TEST(QLabCue, AdoptTimingTakesTimesAlwaysAndTimecodeOnlyWhereMissing)
{
    QLabCue previous = cue("Timecode");
    previous.isPaused = true;
    previous.actionElapsed = 3;
    previous.duration = 60;
    previous.sampledAt = at(5);
    previous.startedAt = at(-10);
    previous.parentID = "G1";
    previous.timecodeStart = "01:00:00:00";
    previous.timecodeRateIndex = 1;
    previous.timecodeOutputType = 1;

    QLabCue fresh = cue("Timecode");
    fresh.startedAt = at(20);
    fresh.duration = 99;
    fresh.timecodeStart = "02:00:00:00";
    fresh.timecodeOutputType = 0;
    fresh.adoptTiming(previous);

    EXPECT_TRUE(fresh.isPaused);
    EXPECT_EQ(fresh.actionElapsed, 3.0);
    EXPECT_EQ(fresh.duration, 60.0);
    EXPECT_EQ(fresh.sampledAt, at(5));
    EXPECT_EQ(fresh.startedAt, at(-10));
    EXPECT_EQ(fresh.parentID, "G1");
    EXPECT_EQ(fresh.timecodeStart, "02:00:00:00");
    EXPECT_EQ(fresh.timecodeRateIndex, 1);
    EXPECT_EQ(fresh.timecodeOutputType, 0);
}

TEST(QLabCue, AdoptTimingClearsTimesThePreviousDidNotHave)
{
    QLabCue fresh = cue();
    fresh.actionElapsed = 8;
    fresh.adoptTiming(cue());
    EXPECT_FALSE(fresh.actionElapsed.has_value());
}

TEST(QLabCue, ComparesFieldByField)
{
    QLabCue other = cue();
    EXPECT_EQ(cue(), other);
    other.sampledAt = at(1);
    EXPECT_NE(cue(), other);
}

TEST(QLabCue, JsonUsesTheFieldNamesAndLeavesOutWhatIsAbsent)
{
    QLabCue minimal = cue();
    minimal.startedAt = *ReferenceDate::date(700'000'000.25);
    const QJsonObject json = minimal.toJson();
    EXPECT_EQ(json.keys(), (QStringList {"id", "isPaused", "name", "number", "startedAt", "type"}));
    // Dates tick in nanoseconds, so the seconds come back within a microsecond.
    EXPECT_NEAR(json.value("startedAt").toDouble(), 700'000'000.25, 1e-6);
    EXPECT_EQ(json.value("isPaused").toBool(true), false);
}

TEST(QLabCue, JsonRoundTripKeepsEveryField)
{
    QLabCue full = cue("Timecode");
    full.number = "12";
    full.name = "Preshow";
    full.isPaused = true;
    full.actionElapsed = 1.25;
    full.duration = 90;
    full.sampledAt = *ReferenceDate::date(750'000'000.5);
    full.startedAt = *ReferenceDate::date(750'000'000.0);
    full.parentID = "G";
    full.timecodeStart = "01:00:00;00";
    full.timecodeRateIndex = 7;
    full.timecodeOutputType = 1;
    const QByteArray text = QJsonDocument(full.toJson()).toJson(QJsonDocument::Compact);
    EXPECT_EQ(QLabCue::fromJson(QJsonDocument::fromJson(text).object()), full);
}

TEST(QLabCue, JsonNullOptionalsReadAsAbsent)
{
    QJsonObject json = cue().toJson();
    json.insert("duration", QJsonValue::Null);
    json.insert("parentID", QJsonValue::Null);
    const auto decoded = QLabCue::fromJson(json);
    ASSERT_TRUE(decoded.has_value());
    EXPECT_FALSE(decoded->duration.has_value());
    EXPECT_FALSE(decoded->parentID.has_value());
}

TEST(QLabCue, JsonWithAMissingOrMistypedFieldIsRejected)
{
    const QJsonObject good = cue().toJson();
    ASSERT_TRUE(QLabCue::fromJson(good).has_value());
    for (const char* key : {"id", "number", "name", "type", "isPaused", "startedAt"}) {
        QJsonObject missing = good;
        missing.remove(key);
        EXPECT_FALSE(QLabCue::fromJson(missing).has_value()) << "without " << key;
    }
    QJsonObject wrong = good;
    wrong.insert("duration", "long");
    EXPECT_FALSE(QLabCue::fromJson(wrong).has_value());
    wrong = good;
    wrong.insert("timecodeRateIndex", 2.5);
    EXPECT_FALSE(QLabCue::fromJson(wrong).has_value());
    wrong = good;
    wrong.insert("startedAt", 1e300);
    EXPECT_FALSE(QLabCue::fromJson(wrong).has_value());
    wrong = good;
    wrong.insert("isPaused", 1);
    EXPECT_FALSE(QLabCue::fromJson(wrong).has_value());
}
