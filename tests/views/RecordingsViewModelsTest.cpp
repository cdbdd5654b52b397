#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <cmath>

#include "FakeCaptureBackend.h"
#include "recording/Recording.h"
#include "replay/SessionPlayer.h"
#include "station/AppModel.h"
#include "views/recordings/RecordingsModel.h"
#include "views/recordings/ReplayModel.h"

using namespace ostrel;

namespace {

// A live station whose shows are recorded into a scratch folder; blocks of a tone are played
// through its pipeline by hand.
class RecordedShows : public ::testing::Test {
protected:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<AppModel> model;

    void SetUp() override
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->setValue("qlabEnabled", false);
        model = std::make_unique<AppModel>(AppModel::Mode::live,
            std::make_unique<AppSettings>(*store),
            std::make_unique<testsupport::FakeCaptureBackend>(), QLabClient::Timings {},
            folder.filePath("Sessions"));
        // The calibration reaches the pipeline when the station starts.
        model->start();
    }

    void play(double seconds)
    {
        std::vector<float> block(960);
        const int blocks = static_cast<int>(seconds * 50.0);
        for (int b = 0; b < blocks; ++b) {
            for (int i = 0; i < 960; ++i)
                block[i] = 0.1f
                    * static_cast<float>(std::sin(2.0 * M_PI * 1000.0 * (b * 960 + i) / 48000.0));
            if (auto interval = model->audio().pipeline()->process(block))
                model->ingest(*interval, std::chrono::system_clock::now());
        }
    }

    Recording recordShow(const QString& name)
    {
        model->startSession(name);
        const QString folderName = *model->sessions().activeSession()->recordingFolderName;
        play(2.0);
        model->finishSession();
        return *Recording::read(folder.filePath("Sessions/") + folderName);
    }
};

// Runs the event loop until `done`, for at most five seconds.
template <typename Condition> bool waitFor(Condition done)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return done();
}

} // namespace

TEST(ReplayStrip, FewerThanTwoLevelsOrNoneAboveZeroDrawNoTrace)
{
    EXPECT_TRUE(ReplayModel::levelTrace({}).isEmpty());
    EXPECT_TRUE(ReplayModel::levelTrace({80.0}).isEmpty());
    EXPECT_TRUE(ReplayModel::levelTrace({-200.0, 0.0, -3.0}).isEmpty());
}

TEST(ReplayStrip, TheTraceSpansAtLeastTwentyDecibelsFromTheQuietestLevel)
{
    const auto trace = ReplayModel::levelTrace({70.0, 80.0, -200.0});
    ASSERT_EQ(trace.size(), 3);
    EXPECT_DOUBLE_EQ(trace[0].x(), 0.0);
    EXPECT_DOUBLE_EQ(trace[2].x(), 1.0);
    EXPECT_DOUBLE_EQ(trace[0].y(), 1.0); // the quietest at the bottom
    EXPECT_DOUBLE_EQ(trace[1].y(), 1.0 - 0.9 * 10.0 / 20.0);
    EXPECT_DOUBLE_EQ(trace[2].y(), 1.0); // silence no lower than the quietest
}

TEST(RecordingsList, ARowSaysHowLongAndHowLargeAndWhetherThereIsSound)
{
    Recording recording;
    recording.session.start = Date {};
    recording.session.end = Date {} + std::chrono::minutes(135);
    recording.size = 512'300'000;
    recording.hasAudio = false;
    EXPECT_EQ(RecordingsModel::caption(recording, false),
        QString::fromUtf8("2 hr 15 min \u00B7 512.3 MB \u00B7 No audio"));
    EXPECT_EQ(RecordingsModel::caption(recording, true), "Recording");
}

TEST_F(RecordedShows, AShowStillBeingRecordedCanBeSelectedButNotReplayed)
{
    RecordingsModel recordings;
    recordings.setAppModel(model.get());
    model->startSession("Evening");
    recordings.refresh();
    ASSERT_TRUE(waitFor([&] { return recordings.rowCount() == 1; }));
    recordings.select(0);
    EXPECT_TRUE(recordings.showsInProgress());
    EXPECT_TRUE(recordings.selectedFolder().isEmpty());
    EXPECT_EQ(
        recordings.data(recordings.index(0), RecordingsModel::captionRole).toString(), "Recording");
    model->finishSession();
    ASSERT_TRUE(waitFor([&] { return recordings.showsReplay(); }));
    EXPECT_FALSE(recordings.selectedFolder().isEmpty());
}

TEST_F(RecordedShows, AReplayOpensTheRecordingWithItsSoundAndMeter)
{
    const Recording recording = recordShow("Evening");
    ReplayModel replay;
    replay.setFolder(recording.folder);
    ASSERT_TRUE(replay.isOpen());
    EXPECT_EQ(replay.title(), "Evening");
    EXPECT_TRUE(replay.hasAudio());
    EXPECT_NE(replay.meter(), nullptr);
    EXPECT_TRUE(replay.problem().isEmpty());
    // The overview arrives from the background and draws the strip's level trace.
    EXPECT_TRUE(waitFor([&] { return !replay.levelTrace().isEmpty(); }));
    replay.seekFraction(1.0);
    EXPECT_DOUBLE_EQ(replay.playhead(), 1.0);
    EXPECT_TRUE(replay.meter()->statistics().leq().has_value());
}

TEST_F(RecordedShows, ARecordingWithoutSoundHasNoVolumeAndSaysSo)
{
    const Recording recording = recordShow("Evening");
    ASSERT_TRUE(QFile::remove(recording.audioPath()));
    ReplayModel replay;
    replay.setFolder(recording.folder);
    ASSERT_TRUE(replay.isOpen());
    EXPECT_FALSE(replay.hasAudio());
    EXPECT_EQ(replay.problem(), "This recording has no audio. Levels and spectrum still replay.");
}

TEST_F(RecordedShows, MovingARecordingToTheBinTakesItOffTheList)
{
    qputenv("XDG_DATA_HOME", folder.filePath("data").toUtf8());
    recordShow("Evening");
    RecordingsModel recordings;
    recordings.setAppModel(model.get());
    recordings.refresh();
    ASSERT_TRUE(waitFor([&] { return recordings.rowCount() == 1; }));
    EXPECT_TRUE(recordings.deletionMessage(0).startsWith("This frees "));
    EXPECT_TRUE(recordings.deletionMessage(0).endsWith(
        ". You can restore it from the Bin until you empty it."));
    recordings.moveToBin(0);
    EXPECT_EQ(recordings.rowCount(), 0);
    EXPECT_TRUE(recordings.problem().isEmpty());
}
