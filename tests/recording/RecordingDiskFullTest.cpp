#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/wait.h>

#include "recording/ChildProcess.h"
#include "recording/RecordingFile.h"
#include "recording/RecordingSignals.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

struct LimitedRun {
    bool audioFailed = false;
    bool measurementsFailed = false;
    double audioSeconds = 0.0;
    int intervals = 0;
    std::vector<std::string> log;
};

// Records in a helper process whose files may not grow beyond `bytes`, as on a full disk.
std::optional<LimitedRun> recordWithFileLimit(
    const QString& folder, long long bytes, const std::string& mode, int seconds)
{
    ChildProcess child({OSTREL_RECORDING_WRITER_PATH, "limit", folder.toStdString(),
        std::to_string(bytes), mode, std::to_string(seconds)});
    std::string line;
    std::vector<std::string> log;
    bool said = false;
    while ((said = child.readLine(line)) && line.rfind("log ", 0) == 0)
        log.push_back(line.substr(4));
    const int status = child.wait();
    if (!said || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        ADD_FAILURE() << "helper failed: " << line << " status " << status;
        return std::nullopt;
    }
    const QRegularExpression form(
        "audioFailed=(\\d) measurementsFailed=(\\d) audioSeconds=([0-9.]+) intervals=(\\d+)");
    const QRegularExpressionMatch match = form.match(QString::fromStdString(line));
    if (!match.hasMatch()) {
        ADD_FAILURE() << "unexpected output: " << line;
        return std::nullopt;
    }
    return LimitedRun {match.captured(1) == "1", match.captured(2) == "1",
        match.captured(3).toDouble(), match.captured(4).toInt(), log};
}

} // namespace

TEST(RecordingDiskFull, AFailedMeasurementsFileSetsItsFlagWhileTheAudioGoesOn)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QString folder = temporary.filePath("full");
    // Silence keeps the audio file far below the limit while 10 frames a second reach it.
    constexpr long long limit = 64 * 1024;
    const auto run = recordWithFileLimit(folder, limit, "quiet-dense", 20);
    ASSERT_TRUE(run.has_value());
    EXPECT_TRUE(run->measurementsFailed);
    EXPECT_FALSE(run->audioFailed);
    EXPECT_NEAR(run->audioSeconds, 20.0, 1e-6);
    EXPECT_EQ(run->intervals, 200);
    ASSERT_EQ(run->log.size(), 1u);
    EXPECT_EQ(run->log.front().rfind("ostrel.recording: Measurement recording stopped: ", 0), 0u)
        << run->log.front();

    const auto frames
        = RecordingFile::open(QDir(folder).filePath(RecordingFormat::framesFileName)).frames;
    ASSERT_TRUE(frames.has_value());
    const qsizetype fit = (limit - 32) / static_cast<qsizetype>(RecordingFormat::frameSize);
    EXPECT_EQ(frames->count(), fit) << "every whole frame that fitted, and the cut one ignored";
    EXPECT_NEAR(frames->duration(), 0.1 * static_cast<double>(fit), 1e-9);

    const Decoded audio = decode(QDir(folder).filePath(RecordingFormat::audioFileName));
    EXPECT_TRUE(audio.error.isEmpty()) << audio.error.toStdString();
    EXPECT_GE(audio.samples.size(), std::size_t {20 * 48000}) << "the audio went on to the end";
}

TEST(RecordingDiskFull, AFailedAudioFileSetsItsFlagWhileTheMeasurementsGoOn)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QString folder = temporary.filePath("full");
    // A busy signal fills the audio file in a few seconds; one frame a second stays far below.
    constexpr long long limit = 48 * 1024;
    const auto run = recordWithFileLimit(folder, limit, "busy-sparse", 20);
    ASSERT_TRUE(run.has_value());
    EXPECT_TRUE(run->audioFailed);
    EXPECT_FALSE(run->measurementsFailed);
    EXPECT_NEAR(run->audioSeconds, 20.0, 1e-6) << "the time line never stops";
    EXPECT_EQ(run->intervals, 20);
    ASSERT_EQ(run->log.size(), 1u);
    EXPECT_EQ(run->log.front().rfind("ostrel.recording: Audio recording stopped: ", 0), 0u)
        << run->log.front();

    const auto frames
        = RecordingFile::open(QDir(folder).filePath(RecordingFormat::framesFileName)).frames;
    ASSERT_TRUE(frames.has_value());
    ASSERT_EQ(frames->count(), 20);
    for (qsizetype i = 0; i < frames->count(); ++i) {
        EXPECT_NEAR(*frames->audioTime(i), static_cast<double>(i + 1), 1e-9);
    }

    const QString audioPath = QDir(folder).filePath(RecordingFormat::audioFileName);
    EXPECT_LE(QFileInfo(audioPath).size(), limit);
    const Decoded audio = decode(audioPath);
    const double seconds = static_cast<double>(audio.samples.size()) / 48000.0;
    EXPECT_GT(seconds, 3.0) << "what reached the disk before it filled still plays";
    EXPECT_LT(seconds, 10.0);
}
