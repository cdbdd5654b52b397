#include <gtest/gtest.h>

#include <QSignalSpy>
#include <cmath>

#include "SessionSamples.h"
#include "sessions/MemorySessionFiles.h"
#include "sessions/SessionArchive.h"
#include "sessions/SessionStore.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

class SessionStoreTest : public ::testing::Test {
protected:
    std::shared_ptr<MemorySessionFiles> files = std::make_shared<MemorySessionFiles>();
    SessionStore store {files, "/Sessions"};

    // Ten intervals a second after `from` up to `to`, each stamped at its end; counted in whole
    // tenths so that the dates fall exactly on them.
    void feed(double from, double to, double level, std::int64_t samples = 4800)
    {
        const auto first = std::lround(from * 10.0) + 1;
        const auto last = std::lround(to * 10.0);
        for (auto tenth = first; tenth <= last; ++tenth)
            store.ingest(interval(level, samples), at(static_cast<double>(tenth) / 10.0));
    }

    QStringList savedFiles() const { return files->filesIn("/Sessions"); }
};

} // namespace

TEST_F(SessionStoreTest, HistoryIsNewestFirstAndEachStartIsAnnouncedInOrder)
{
    QStringList announced;
    store.onCueStarted = [&](const CueRecord& record) { announced.append(record.number); };
    store.updateRunningCues({cue("A", "1", "Preshow"), cue("B", "2", "Walk-in")}, at(0));
    EXPECT_EQ(announced, (QStringList {"1", "2"}));
    store.updateRunningCues({}, at(5));
    ASSERT_EQ(store.history().size(), 2u);
    // Both stopped together: the later of the two comes first.
    EXPECT_EQ(store.history()[0].number, "2");
    EXPECT_EQ(store.history()[1].number, "1");
    store.updateRunningCues({cue("C", "3", "Thunder")}, at(6));
    store.updateRunningCues({}, at(7));
    EXPECT_EQ(store.history().front().number, "3");
}

TEST_F(SessionStoreTest, HistoryKeepsOnlyTheNewestUpToTheLimit)
{
    for (int index = 0; index < 2003; ++index) {
        store.updateRunningCues(
            {cue(QString::number(index), QString::number(index), "Cue")}, at(index));
        store.updateRunningCues({}, at(index + 0.5));
    }
    ASSERT_EQ(store.history().size(), 2000u);
    EXPECT_EQ(store.history().front().number, "2002");
    EXPECT_EQ(store.history().back().number, "3");
}

TEST_F(SessionStoreTest, ACueThatBeganBeforeTheSessionIsInHistoryButNotInTheSession)
{
    store.updateRunningCues({cue("A", "1", "Preshow")}, at(-5));
    store.start("Evening", at(0), std::nullopt);
    store.updateRunningCues({}, at(10));
    ASSERT_EQ(store.history().size(), 1u);
    EXPECT_EQ(store.history().front().cueID, "A");
    const auto session = store.end(at(20));
    ASSERT_TRUE(session);
    EXPECT_TRUE(session->cues.empty());
}

TEST_F(SessionStoreTest, ACueStillRunningAtTheEndIsSavedEndedButStaysOpenAndOutOfHistory)
{
    store.start("Evening", at(0), std::nullopt);
    store.updateRunningCues({cue("A", "1", "Preshow")}, at(2));
    feed(2, 4, 80);
    store.updateRunningCues({cue("A", "1", "Preshow"), cue("B", "2", "Storm")}, at(4));
    store.updateRunningCues({cue("B", "2", "Storm")}, at(6));
    const auto session = store.end(at(10));
    ASSERT_TRUE(session);
    ASSERT_EQ(session->cues.size(), 2u);
    // In order of start: A finished, B cut off at the session's end.
    EXPECT_EQ(session->cues[0].cueID, "A");
    EXPECT_EQ(session->cues[0].end, at(6));
    EXPECT_EQ(session->cues[1].cueID, "B");
    EXPECT_EQ(session->cues[1].end, at(10));
    ASSERT_EQ(store.history().size(), 1u);
    EXPECT_EQ(store.history().front().cueID, "A");
    EXPECT_NE(store.tracker().activeRecord("B"), nullptr);

    const auto saved
        = SessionArchive::load("/Sessions/" + SessionArchive::baseName(at(0)) + ".json", *files);
    ASSERT_TRUE(saved);
    EXPECT_EQ(*saved, *session);
}

TEST_F(SessionStoreTest, TheLevelLogHasAnEntryASecondOfTheIntervalClock)
{
    store.start("Evening", at(0), std::nullopt);
    feed(0, 3.0, 70);
    ASSERT_EQ(store.sessionForExport(at(3.0))->levels.size(), 2u);
    feed(3.0, 3.1, 70);
    const auto session = store.sessionForExport(at(3.1));
    ASSERT_TRUE(session);
    ASSERT_EQ(session->levels.size(), 3u);
    EXPECT_EQ(session->levels[0].time, at(0.1));
    EXPECT_NEAR(session->levels[0].leq, 70.0, 1e-9);
    EXPECT_NEAR(session->levels[0].maxLevel, 71.0, 1e-9);
    EXPECT_EQ(session->levels[1].time, at(1.1));
    EXPECT_NEAR(session->statistics.leq().value(), 70.0, 1e-9);
}

TEST_F(
    SessionStoreTest, TurningLevelHistoryOffStopsEntriesButNotStatisticsAndResumesWithTheStaleStart)
{
    store.start("Evening", at(0), std::nullopt);
    feed(0, 1.5, 70);
    store.setRecordsLevelHistory(false);
    feed(1.5, 5.0, 90);
    auto session = store.sessionForExport(at(5.1));
    ASSERT_EQ(session->levels.size(), 1u);
    EXPECT_EQ(session->statistics.maxLevel, 91.0);

    store.setRecordsLevelHistory(true);
    // The first interval after the gap closes the second that began before it.
    store.ingest(interval(60), at(5.2));
    session = store.sessionForExport(at(5.3));
    ASSERT_EQ(session->levels.size(), 2u);
    EXPECT_EQ(session->levels[1].time, at(1.1));
    // Only what was gathered while the log was on: the 70 dB half second and one 60 dB tenth.
    EXPECT_NEAR(session->levels[1].maxLevel, 71.0, 1e-9);
    EXPECT_LT(session->levels[1].leq, 70.0);
    store.ingest(interval(60), at(5.3));
    EXPECT_EQ(store.sessionForExport(at(5.3))->levels.size(), 2u);
}

TEST_F(SessionStoreTest, WithoutSignalNoLevelEntriesAreWritten)
{
    store.start("Evening", at(0), std::nullopt);
    feed(0, 5, 70, 0);
    const auto session = store.end(at(5));
    ASSERT_TRUE(session);
    EXPECT_TRUE(session->levels.empty());
    EXPECT_FALSE(session->statistics.maxLevel);
}

TEST_F(SessionStoreTest, EndWithoutASessionYieldsNothingAndLeavesTheLastSessionAlone)
{
    EXPECT_FALSE(store.end(at(0)));
    EXPECT_FALSE(store.lastSession());
    store.start("Matinee", at(0), std::nullopt);
    const auto first = store.end(at(10));
    ASSERT_TRUE(first);
    QSignalSpy lastChanges(&store, &SessionStore::lastSessionChanged);
    EXPECT_FALSE(store.end(at(20)));
    EXPECT_EQ(store.lastSession(), first);
    EXPECT_EQ(lastChanges.count(), 0);
}

TEST_F(SessionStoreTest, TwoSessionsEndedInTheSameSecondWithoutRecordingShareOneFile)
{
    store.start("First", at(0), std::nullopt);
    store.end(at(0.2));
    store.start("Second", at(0.4), std::nullopt);
    store.end(at(0.6));
    ASSERT_EQ(savedFiles().size(), 1);
    const auto saved = SessionArchive::load("/Sessions/" + savedFiles().front(), *files);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->name, "Second");
}

TEST_F(SessionStoreTest, ASessionWithARecordingIsSavedInItsFolder)
{
    files->makeFolder("/Sessions/Evening Show");
    store.start("Evening", at(0), QStringLiteral("Evening Show"));
    store.end(at(3));
    const auto saved = SessionArchive::load("/Sessions/Evening Show/session.json", *files);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->recordingFolderName, QStringLiteral("Evening Show"));
    EXPECT_TRUE(savedFiles().isEmpty());
}

TEST_F(SessionStoreTest, AStoreThatDoesNotArchiveWritesNothingButKeepsTheLastSession)
{
    store.setArchivesSessions(false);
    store.start("Evening", at(0), std::nullopt);
    store.end(at(3));
    EXPECT_FALSE(files->folders.contains("/Sessions"));
    ASSERT_TRUE(store.lastSession());
    EXPECT_EQ(store.sessionForExport(at(4)), store.lastSession());
}

TEST_F(SessionStoreTest, ASessionStartsWithTheMeterSettingAndCorrectionOfTheMoment)
{
    store.setMeterSetting("LAF");
    store.setMicrophoneCorrectionName(QStringLiteral("MM-1 #2241"));
    store.start("Evening", at(0), std::nullopt);
    store.setMeterSetting("LCS");
    ASSERT_TRUE(store.activeSession());
    EXPECT_EQ(store.activeSession()->meterSetting, "LAF");
    EXPECT_EQ(store.activeSession()->microphoneCorrection, QStringLiteral("MM-1 #2241"));
    // New cue records take the setting of their own start.
    store.updateRunningCues({cue("A", "1", "Preshow")}, at(1));
    EXPECT_EQ(store.tracker().activeRecord("A")->meterSetting, "LCS");
}

TEST_F(SessionStoreTest, SessionForExportIsTheRunningSnapshotWithoutEndingIt)
{
    store.start("Evening", at(0), std::nullopt);
    store.updateRunningCues({cue("A", "1", "Preshow")}, at(1));
    const auto snapshot = store.sessionForExport(at(5));
    ASSERT_TRUE(snapshot);
    EXPECT_FALSE(snapshot->end);
    ASSERT_EQ(snapshot->cues.size(), 1u);
    EXPECT_EQ(snapshot->cues.front().end, at(5));
    EXPECT_TRUE(store.activeSession());
    EXPECT_FALSE(store.lastSession());
}

TEST_F(SessionStoreTest, ASessionKeepsEveryOneOfItsCuesBeyondTheHistoryLimit)
{
    store.start("Marathon", at(0), std::nullopt);
    for (int index = 0; index < 2005; ++index) {
        store.updateRunningCues(
            {cue(QString::number(index), QString::number(index), "Cue")}, at(index + 1));
        store.updateRunningCues({}, at(index + 1.5));
    }
    EXPECT_EQ(store.history().size(), 2000u);
    const auto session = store.end(at(3000));
    ASSERT_TRUE(session);
    ASSERT_EQ(session->cues.size(), 2005u);
    EXPECT_EQ(session->cues.front().number, "0");
    EXPECT_EQ(session->cues.back().number, "2004");
}
