#include <gtest/gtest.h>

#include "sessions/CueTracker.h"
#include "sessions/SessionSamples.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

std::vector<QString> cueIDs(const std::vector<CueRecord>& records)
{
    std::vector<QString> ids;
    for (const CueRecord& record : records)
        ids.push_back(record.cueID);
    return ids;
}

using IDs = std::vector<QString>;

} // namespace

TEST(CueTracker, NewCueOpensARecordStartingAtTheUpdateDate)
{
    CueTracker tracker;
    tracker.meterSetting = "LAeq Fast +94.0 dB";
    const auto changes = tracker.update({cue("A", "1", "Preshow", "Audio")}, at(2.0));

    ASSERT_EQ(changes.started.size(), 1u);
    EXPECT_TRUE(changes.stopped.empty());
    const CueRecord& record = changes.started.front();
    EXPECT_FALSE(record.id.isNull());
    EXPECT_EQ(record.cueID, "A");
    EXPECT_EQ(record.number, "1");
    EXPECT_EQ(record.name, "Preshow");
    EXPECT_EQ(record.type, "Audio");
    EXPECT_EQ(record.start, at(2.0)); // not the cue's own startedAt
    EXPECT_FALSE(record.end.has_value());
    EXPECT_EQ(record.meterSetting, "LAeq Fast +94.0 dB");
    EXPECT_TRUE(record.statistics.isEmpty());
    ASSERT_EQ(tracker.active.size(), 1u);
    EXPECT_EQ(tracker.active.front(), record);
    EXPECT_TRUE(tracker.history.empty());
}

TEST(CueTracker, EmptyRunningListClosesAllOpenRecordsInOrderOfStartAndOpensNone)
{
    CueTracker tracker;
    tracker.update({cue("B", "2", "Rain")}, at(1.0));
    tracker.update({cue("B", "2", "Rain"), cue("A", "1", "Thunder")}, at(2.0));
    tracker.update(
        {cue("C", "3", "Wind"), cue("B", "2", "Rain"), cue("A", "1", "Thunder")}, at(3.0));

    const auto changes = tracker.update({}, at(10.0));

    EXPECT_TRUE(changes.started.empty());
    EXPECT_EQ(cueIDs(changes.stopped), (IDs {"B", "A", "C"}));
    for (const CueRecord& record : changes.stopped)
        EXPECT_EQ(record.end, at(10.0));
    EXPECT_TRUE(tracker.active.empty());
    EXPECT_EQ(cueIDs(tracker.history), (IDs {"B", "A", "C"}));
    EXPECT_EQ(tracker.history, changes.stopped);
}

TEST(CueTracker, RecordsCloseInOrderOfStartEvenWhenTheClockWasSetBack)
{
    CueTracker tracker;
    tracker.update({cue("A", "1", "First")}, at(10.0));
    tracker.update({cue("A", "1", "First"), cue("B", "2", "Second")}, at(5.0));

    const auto changes = tracker.update({}, at(20.0));

    EXPECT_EQ(cueIDs(changes.stopped), (IDs {"B", "A"}));
}

TEST(CueTracker, TwoCuesStartedInTheSameUpdateBothStartAtTheUpdateDate)
{
    CueTracker tracker;
    const auto changes = tracker.update({cue("A", "1", "One"), cue("B", "2", "Two")}, at(4.5));

    ASSERT_EQ(changes.started.size(), 2u);
    EXPECT_EQ(cueIDs(changes.started), (IDs {"A", "B"}));
    EXPECT_EQ(changes.started[0].start, at(4.5));
    EXPECT_EQ(changes.started[1].start, at(4.5));
    EXPECT_NE(changes.started[0].id, changes.started[1].id);
}

TEST(CueTracker, UnchangedListYieldsEmptyChangesAlsoWhenNamesChange)
{
    CueTracker tracker;
    tracker.update({cue("A", "1", "One"), cue("B", "2", "Two")}, at(0.0));

    EXPECT_TRUE(tracker.update({cue("A", "1", "One"), cue("B", "2", "Two")}, at(1.0)).isEmpty());
    const auto renamed
        = tracker.update({cue("A", "1.5", "One, louder"), cue("B", "2", "Two")}, at(2.0));
    EXPECT_TRUE(renamed.isEmpty());
    EXPECT_TRUE(renamed.started.empty());
    EXPECT_TRUE(renamed.stopped.empty());
}

TEST(CueTracker, RunningCueTakesOverANewNumberAndNameButKeepsTypeStartAndStatistics)
{
    CueTracker tracker;
    tracker.update({cue("A", "1", "One", "Audio")}, at(0.0));
    tracker.record(interval(80.0));
    const CueRecord before = tracker.active.front();

    tracker.update({cue("A", "7", "", "Video")}, at(3.0));

    ASSERT_EQ(tracker.active.size(), 1u);
    const CueRecord& after = tracker.active.front();
    EXPECT_EQ(after.id, before.id);
    EXPECT_EQ(after.number, "7");
    EXPECT_EQ(after.name, "Untitled Video Cue"); // from the display name of the new list entry
    EXPECT_EQ(after.type, "Audio");
    EXPECT_EQ(after.start, at(0.0));
    EXPECT_EQ(after.statistics, before.statistics);
}

TEST(CueTracker, CueWithAnEmptyNameIsRecordedAsUntitledCueOfItsType)
{
    CueTracker tracker;
    const auto changes = tracker.update({cue("A", "1", "", "Audio")}, at(0.0));
    ASSERT_EQ(changes.started.size(), 1u);
    EXPECT_EQ(changes.started.front().name, "Untitled Audio Cue");
}

TEST(CueTracker, CueThatLeavesTheListAndComesBackGetsASecondRecord)
{
    CueTracker tracker;
    const auto first = tracker.update({cue("A", "1", "One")}, at(0.0));
    tracker.update({}, at(1.0));
    const auto second = tracker.update({cue("A", "1", "One")}, at(2.0));

    ASSERT_EQ(second.started.size(), 1u);
    EXPECT_NE(second.started.front().id, first.started.front().id);
    EXPECT_EQ(second.started.front().start, at(2.0));
    ASSERT_EQ(tracker.history.size(), 1u);
    EXPECT_EQ(tracker.history.front().id, first.started.front().id);
}

TEST(CueTracker, SameIDTwiceInOneListOpensOneRecord)
{
    CueTracker tracker;
    const auto changes = tracker.update({cue("A", "1", "One"), cue("A", "1b", "Again")}, at(0.0));
    ASSERT_EQ(changes.started.size(), 1u);
    ASSERT_EQ(tracker.active.size(), 1u);
    EXPECT_EQ(tracker.active.front().number, "1b");
}

TEST(CueTracker, ClosedRecord2001PushesTheOldestOutOfHistory)
{
    CueTracker tracker;
    ASSERT_EQ(tracker.historyLimit, 2000);
    for (int i = 0; i < 2000; ++i) {
        tracker.update({cue(QString::number(i), QString::number(i), "Cue")}, at(i));
        tracker.update({}, at(i + 0.5));
    }
    ASSERT_EQ(tracker.history.size(), 2000u);
    EXPECT_EQ(tracker.history.front().cueID, "0");

    tracker.update({cue("last", "2001", "Cue")}, at(3000.0));
    const auto changes = tracker.update({}, at(3001.0));

    EXPECT_EQ(changes.stopped.size(), 1u);
    ASSERT_EQ(tracker.history.size(), 2000u);
    EXPECT_EQ(tracker.history.front().cueID, "1");
    EXPECT_EQ(tracker.history.back().cueID, "last");
}

TEST(CueTracker, HistoryIsTrimmedToASmallerLimitAtTheNextUpdate)
{
    CueTracker tracker;
    for (int i = 0; i < 5; ++i)
        tracker.update({cue(QString::number(i), "", "Cue")}, at(i));
    tracker.update({}, at(10.0));
    ASSERT_EQ(tracker.history.size(), 5u);

    tracker.historyLimit = 2;
    tracker.update({}, at(11.0));
    EXPECT_EQ(cueIDs(tracker.history), (IDs {"3", "4"}));
}

TEST(CueTracker, IntervalGoesWholeToEveryOpenRecord)
{
    CueTracker tracker;
    tracker.update({cue("A", "1", "One")}, at(0.0));
    tracker.record(interval(70.0));
    tracker.update({cue("A", "1", "One"), cue("B", "2", "Two")}, at(1.0));
    tracker.record(interval(90.0));

    LevelStatistics both;
    both.add(interval(70.0));
    both.add(interval(90.0));
    LevelStatistics second;
    second.add(interval(90.0));
    EXPECT_EQ(tracker.activeRecord("A")->statistics, both);
    EXPECT_EQ(tracker.activeRecord("B")->statistics, second);

    // A closed record hears no more.
    tracker.update({cue("B", "2", "Two")}, at(2.0));
    tracker.record(interval(100.0));
    EXPECT_EQ(tracker.history.front().statistics, both);
}

TEST(CueTracker, RecordWithAnIntervalOfNoSamplesChangesNothing)
{
    CueTracker tracker;
    tracker.update({cue("A", "1", "One")}, at(0.0));
    tracker.record(interval(70.0));
    const auto before = tracker.active;

    tracker.record(interval(120.0, 0));

    EXPECT_EQ(tracker.active, before);
}

TEST(CueTracker, ActiveSnapshotEndsCopiesInOrderOfStartAndLeavesTheTrackerOpen)
{
    CueTracker tracker;
    tracker.update({cue("B", "2", "Two")}, at(0.0));
    tracker.update({cue("A", "1", "One"), cue("B", "2", "Two")}, at(1.0));
    const auto before = tracker.active;

    const auto snapshot = tracker.activeSnapshot(at(9.0));

    EXPECT_EQ(cueIDs(snapshot), (IDs {"B", "A"}));
    for (const CueRecord& record : snapshot)
        EXPECT_EQ(record.end, at(9.0));
    EXPECT_EQ(tracker.active, before);
    for (const CueRecord& record : tracker.active)
        EXPECT_FALSE(record.end.has_value());
    EXPECT_TRUE(tracker.history.empty());
}

TEST(CueTracker, MeterSettingIsCopiedIntoNewRecordsOnly)
{
    CueTracker tracker;
    tracker.meterSetting = "A Fast";
    tracker.update({cue("A", "1", "One")}, at(0.0));
    tracker.meterSetting = "C Slow";
    tracker.update({cue("A", "1", "One"), cue("B", "2", "Two")}, at(1.0));

    EXPECT_EQ(tracker.activeRecord("A")->meterSetting, "A Fast");
    EXPECT_EQ(tracker.activeRecord("B")->meterSetting, "C Slow");
    EXPECT_EQ(tracker.activeRecord("missing"), nullptr);
}
