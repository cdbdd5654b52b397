#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "qlab/QLabProtocol.h"

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
    result.id = "C";
    result.type = type;
    result.startedAt = base;
    return result;
}

QLabCue applied(const char* values, QLabCue target = cue(), Date date = at(5))
{
    QLabProtocol::apply(
        QJsonValue(QJsonDocument::fromJson(QByteArray(values)).object()), target, date);
    return target;
}

} // namespace

TEST(QLabProtocolApply, NumberGivenAsAJsonNumberIsStoredAsText)
{
    EXPECT_EQ(applied(R"({"number":12})").number, "12");
    EXPECT_EQ(applied(R"({"number":1.25})").number, "1.25");
    EXPECT_EQ(applied(R"({"number":-3})").number, "-3");
}

TEST(QLabProtocolApply, NumberAndNameOfOtherShapesBecomeEmpty)
{
    QLabCue named = cue();
    named.number = "4";
    named.name = "Storm";
    const QLabCue result = applied(R"({"number":null,"name":["x"]})", named);
    EXPECT_EQ(result.number, "");
    EXPECT_EQ(result.name, "");
}

TEST(QLabProtocolApply, MissingKeysChangeNothing)
{
    QLabCue known = cue("Timecode");
    known.number = "4";
    known.name = "Storm";
    known.parentID = "G";
    known.timecodeStart = "01:00:00:00";
    known.timecodeRateIndex = 2;
    known.timecodeOutputType = 1;
    known.isPaused = true;
    known.duration = 3;
    EXPECT_EQ(applied("{}", known), known);
}

TEST(QLabProtocolApply, TypeOnlyFromAString)
{
    EXPECT_EQ(applied(R"({"type":"Video"})").type, "Video");
    EXPECT_EQ(applied(R"({"type":5})").type, "Audio");
}

TEST(QLabProtocolApply, EmptyParentNeverClearsAKnownOne)
{
    QLabCue child = cue();
    child.parentID = "G1";
    EXPECT_EQ(applied(R"({"parent":""})", child).parentID, "G1");
    EXPECT_EQ(applied(R"({"parent":null})", child).parentID, "G1");
    EXPECT_EQ(applied(R"({"parent":"G2"})", child).parentID, "G2");
}

TEST(QLabProtocolApply, StartTimeWhenNotEmpty)
{
    EXPECT_EQ(applied(R"({"startTime":"01:00:00:00"})").timecodeStart, "01:00:00:00");
    EXPECT_EQ(applied(R"({"startTime":3600})").timecodeStart, "3600");
    QLabCue timecode = cue("Timecode");
    timecode.timecodeStart = "02:00:00:00";
    EXPECT_EQ(applied(R"({"startTime":""})", timecode).timecodeStart, "02:00:00:00");
}

TEST(QLabProtocolApply, UnnamedTimecodeCueGivesItsStartInTheDisplayName)
{
    const QLabCue result
        = applied(R"({"type":"Timecode","displayName":"LTC 29.97 drop @ 01:02:03;04"})");
    EXPECT_EQ(result.timecodeStart, "01:02:03;04");
}

TEST(QLabProtocolApply, DisplayNameIsReadOnlyForTimecodeCuesWithoutAStartTimeKey)
{
    EXPECT_FALSE(applied(R"({"displayName":"MTC @ 01:02:03:04"})").timecodeStart.has_value());
    EXPECT_FALSE(applied(R"({"displayName":"MTC @ 01:02:03:04","startTime":""})", cue("Timecode"))
                     .timecodeStart.has_value());
    EXPECT_FALSE(
        applied(R"({"displayName":"Timecode"})", cue("Timecode")).timecodeStart.has_value());
}

TEST(QLabProtocolApply, FramerateAndOutputTypeAreTruncatedNumbers)
{
    const QLabCue result = applied(R"({"framerate":"6","outputType":1.9})");
    EXPECT_EQ(result.timecodeRateIndex, 6);
    EXPECT_EQ(result.timecodeOutputType, 1);
    EXPECT_EQ(applied(R"({"framerate":-2.7})").timecodeRateIndex, -2);
}

TEST(QLabProtocolApply, FramerateThatIsNotANumberIsIgnored)
{
    EXPECT_FALSE(applied(R"({"framerate":"fast"})").timecodeRateIndex.has_value());
    EXPECT_FALSE(applied(R"({"framerate":" 6"})").timecodeRateIndex.has_value());
    EXPECT_FALSE(applied(R"({"outputType":[1]})").timecodeOutputType.has_value());
}

TEST(QLabProtocolApply, FramerateOutsideSixtyFourBitsIsDroppedNotACrash)
{
    EXPECT_FALSE(applied(R"({"framerate":1e300})").timecodeRateIndex.has_value());
    EXPECT_FALSE(applied(R"({"framerate":"inf"})").timecodeRateIndex.has_value());
    EXPECT_FALSE(applied(R"({"outputType":"nan"})").timecodeOutputType.has_value());
    EXPECT_FALSE(applied(R"({"outputType":9223372036854775808})").timecodeOutputType.has_value());
}

TEST(QLabProtocolApply, PausedGivenAsYesIsTrue)
{
    EXPECT_TRUE(applied(R"({"isPaused":"YES"})").isPaused);
}

TEST(QLabProtocolApply, PausedGivenAsNoIsFalse)
{
    QLabCue paused = cue();
    paused.isPaused = true;
    EXPECT_FALSE(applied(R"({"isPaused":"no"})", paused).isPaused);
}

TEST(QLabProtocolApply, PausedGivenAsAListLeavesTheFieldAlone)
{
    QLabCue paused = cue();
    paused.isPaused = true;
    EXPECT_TRUE(applied(R"({"isPaused":[false]})", paused).isPaused);
    EXPECT_FALSE(applied(R"({"isPaused":{}})").isPaused);
}

TEST(QLabProtocolApply, PausedFromJsonBooleansAndNumbers)
{
    EXPECT_TRUE(applied(R"({"isPaused":true})").isPaused);
    EXPECT_TRUE(applied(R"({"isPaused":2})").isPaused);
    QLabCue paused = cue();
    paused.isPaused = true;
    EXPECT_FALSE(applied(R"({"isPaused":false})", paused).isPaused);
    EXPECT_FALSE(applied(R"({"isPaused":0})", paused).isPaused);
}

TEST(QLabProtocolApply, ActionElapsedIsStampedWithTheGivenDate)
{
    const QLabCue result = applied(R"({"actionElapsed":"12.5"})", cue(), at(42));
    EXPECT_EQ(result.actionElapsed, 12.5);
    EXPECT_EQ(result.sampledAt, at(42));
    EXPECT_DOUBLE_EQ(result.elapsed(at(43)), 13.5);
}

TEST(QLabProtocolApply, UnreadableActionElapsedLeavesTheSampleAlone)
{
    QLabCue sampled = cue();
    sampled.actionElapsed = 1;
    sampled.sampledAt = at(1);
    for (const char* values : {R"({"actionElapsed":"soon"})", R"({"actionElapsed":"inf"})"}) {
        const QLabCue result = applied(values, sampled, at(9));
        EXPECT_EQ(result.actionElapsed, 1.0) << values;
        EXPECT_EQ(result.sampledAt, at(1)) << values;
    }
}

TEST(QLabProtocolApply, CurrentDurationZeroWinsOverDuration)
{
    const QLabCue result = applied(R"({"currentDuration":0,"duration":30})");
    EXPECT_EQ(result.duration, 0.0);
    EXPECT_FALSE(result.remaining(at(1)).has_value());
}

TEST(QLabProtocolApply, DurationWhenCurrentDurationIsUnreadable)
{
    EXPECT_EQ(applied(R"({"currentDuration":"n/a","duration":"30"})").duration, 30.0);
    EXPECT_EQ(applied(R"({"duration":12})").duration, 12.0);
}

TEST(QLabProtocolApply, ValuesThatAreNotAnObjectChangeNothing)
{
    QLabCue target = cue();
    QLabProtocol::apply(QJsonValue(QJsonArray {1, 2}), target, at(1));
    QLabProtocol::apply(std::nullopt, target, at(1));
    EXPECT_EQ(target, cue());
}

TEST(QLabProtocolApply, PropertyReplyForAKnownKeyIsApplied)
{
    QLabCue timecode = cue("Timecode");
    EXPECT_TRUE(QLabProtocol::apply(
        "/workspace/W/cue_id/C/startTime", QJsonValue("00:59:50:00"), timecode, at(1)));
    EXPECT_EQ(timecode.timecodeStart, "00:59:50:00");
    EXPECT_TRUE(
        QLabProtocol::apply("/workspace/W/cue_id/C/framerate", QJsonValue(7), timecode, at(1)));
    EXPECT_EQ(timecode.timecodeRateIndex, 7);
    EXPECT_TRUE(
        QLabProtocol::apply("/workspace/W/cue_id/C/outputType", QJsonValue("0"), timecode, at(1)));
    EXPECT_EQ(timecode.timecodeOutputType, 0);
}

TEST(QLabProtocolApply, PropertyReplyForAnotherKeyIsNotAProperty)
{
    QLabCue target = cue();
    EXPECT_FALSE(QLabProtocol::apply("/workspace/W/cue_id/C/name", QJsonValue("x"), target, at(1)));
    EXPECT_FALSE(QLabProtocol::apply("", QJsonValue("x"), target, at(1)));
    EXPECT_EQ(target, cue());
}

TEST(QLabProtocolApply, PropertyReplyWithoutDataChangesNothingAndSkipsTheDisplayName)
{
    QLabCue timecode = cue("Timecode");
    timecode.name = "";
    timecode.timecodeStart = "01:00:00:00";
    EXPECT_TRUE(
        QLabProtocol::apply("/workspace/W/cue_id/C/startTime", std::nullopt, timecode, at(1)));
    EXPECT_EQ(timecode.timecodeStart, "01:00:00:00");
    QLabCue fresh = cue("Timecode");
    EXPECT_TRUE(QLabProtocol::apply("/workspace/W/cue_id/C/startTime", QJsonValue(), fresh, at(1)));
    EXPECT_FALSE(fresh.timecodeStart.has_value());
}
