#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "recording/Recording.h"
#include "recording/RecordingSignals.h"
#include "recording/SessionReplay.h"
#include "sessions/RecordingFormat.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

QStringList logged;

void keepMessage(QtMsgType, const QMessageLogContext& context, const QString& message)
{
    logged.append(QString::fromLatin1(context.category) + QStringLiteral(": ") + message);
}

SessionPlayer::Options inTest()
{
    SessionPlayer::Options options;
    options.runsTicker = false;
    options.runInBackground = [](auto, auto) {};
    return options;
}

Recording recordingIn(const QTemporaryDir& folder)
{
    Recording recording;
    recording.folder = folder.path();
    recording.session
        = ShowSession(QStringLiteral("Matinee"), sessionStart(), QStringLiteral("LAeq"));
    recording.hasAudio = QFile::exists(recording.audioPath());
    recording.hasMeasurements = QFile::exists(recording.framesPath());
    return recording;
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

TEST(SessionReplay, RecordingWithoutFilesSaysItsMeasurementsCouldNotBeRead)
{
    QTemporaryDir folder;
    auto player = SessionReplay::open(recordingIn(folder), inTest());
    EXPECT_EQ(player->problem(), QStringLiteral("This recording's measurements couldn't be read."));
    EXPECT_EQ(player->duration(), 0.0);
}

TEST(SessionReplay, RecordedShowReplaysWithFramesAndSound)
{
    QTemporaryDir folder;
    auto created = SessionRecorder::create(folder.path(), sessionStart(), true);
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<SessionRecorder>>(created));
    auto recorder = std::get<std::shared_ptr<SessionRecorder>>(created);
    feed(*recorder, busySignal(48000 * 2, 48000.0), Feed {48000.0});
    recorder->finish();

    auto player = SessionReplay::open(recordingIn(folder), inTest());
    EXPECT_TRUE(player->problem().isEmpty()) << player->problem().toStdString();
    EXPECT_NEAR(player->duration(), 2.0, 0.05);
    player->seek(1.0);
    EXPECT_FALSE(player->meterModel().liveStatistics().isEmpty());
}

TEST(SessionReplay, SoundThatCanNotBeOpenedIsLoggedAndTheFramesStillReplay)
{
    QTemporaryDir folder;
    write(QDir(folder.path()).filePath(RecordingFormat::framesFileName), RecordingFormat::header());
    write(QDir(folder.path()).filePath(RecordingFormat::audioFileName), QByteArray(4000, 'x'));
    logged.clear();
    const QtMessageHandler previous = qInstallMessageHandler(keepMessage);
    auto player = SessionReplay::open(recordingIn(folder), inTest());
    qInstallMessageHandler(previous);
    EXPECT_EQ(player->problem(),
        QStringLiteral("This recording has no audio. Levels and spectrum still replay."));
    ASSERT_EQ(logged.size(), 1);
    EXPECT_TRUE(logged[0].startsWith(QStringLiteral("ostrel.replay: Couldn't open audio: ")))
        << logged[0].toStdString();
}
