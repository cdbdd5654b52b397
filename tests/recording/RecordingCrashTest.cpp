#include <gtest/gtest.h>

#include <cmath>
#include <csignal>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <sys/wait.h>

#include "exposure/ExposureFormat.h"
#include "recording/ChildProcess.h"
#include "recording/RecordingFile.h"
#include "recording/RecordingSignals.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

// Records into `folder` in a child process and kills it while it records the second after
// `seconds` reported written. True when it was killed as planned.
::testing::AssertionResult recordAndKill(const QString& folder, int seconds)
{
    ChildProcess child({OSTREL_RECORDING_WRITER_PATH, "crash", folder.toStdString(), "48000"});
    if (!child.started()) return ::testing::AssertionFailure() << "the writer did not start";
    std::string line;
    int written = 0;
    while (written < seconds && child.readLine(line))
        written = std::stoi(line);
    if (written != seconds) return ::testing::AssertionFailure() << "wrote " << written << " s";
    child.kill(SIGKILL);
    const int status = child.wait();
    if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL)
        return ::testing::AssertionFailure() << "not ended by SIGKILL";
    return ::testing::AssertionSuccess();
}

} // namespace

TEST(RecordingCrash, AKilledRecorderLeavesEveryWholeFrameReadableAndTheAudioPlayableToNearTheKill)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QString folder = temporary.filePath("killed");
    // The helper says each second once it is written; it is killed while it records the next.
    ASSERT_TRUE(recordAndKill(folder, 3));

    const QString framesPath = QDir(folder).filePath(RecordingFormat::framesFileName);
    const auto frames = RecordingFile::open(framesPath).frames;
    ASSERT_TRUE(frames.has_value());
    const qint64 bytes = QFileInfo(framesPath).size();
    EXPECT_EQ(frames->count(), (bytes - 32) / static_cast<qint64>(RecordingFormat::frameSize));
    EXPECT_GE(frames->count(), 30) << "ten frames for each second reported";
    double previous = 0.0;
    for (qsizetype i = 0; i < frames->count(); ++i) {
        const auto frame = frames->frame(i, true);
        ASSERT_TRUE(frame.has_value());
        EXPECT_NEAR(frame->audioTime, 0.1 * static_cast<double>(i + 1), 1e-9);
        EXPECT_GT(frame->audioTime, previous);
        previous = frame->audioTime;
        // The helper dates each block by its audio, so both clocks agree in every whole frame.
        EXPECT_NEAR(frame->wallTime, frame->audioTime, 1e-6);
        EXPECT_TRUE(frame->interval.spectrum.has_value());
    }

    const Decoded audio = decode(QDir(folder).filePath(RecordingFormat::audioFileName));
    EXPECT_TRUE(audio.error.isEmpty()) << audio.error.toStdString();
    ASSERT_EQ(audio.sampleRate, 48000);
    // All that was reported written, less what the encoder held back (a frame and its priming).
    EXPECT_GE(audio.samples.size(), std::size_t {3 * 48000 - 2048});
    const double writtenSeconds = frames->duration() + 1.0; // at most the second under way
    EXPECT_LE(static_cast<double>(audio.samples.size()) / 48000.0, writtenSeconds + 0.1);
    double sum = 0.0;
    for (std::size_t i = 2048; i < 3 * 48000 - 2048; ++i) {
        sum += static_cast<double>(audio.samples[i]) * audio.samples[i];
    }
    EXPECT_NEAR(std::sqrt(sum / (3 * 48000 - 4096)), 0.3 / std::sqrt(2.0), 0.02)
        << "the tone is there, not silence";
}

TEST(RecordingCrash, AKilledRecorderKeepsAnExposureFrameForEveryWholeMeasurementFrame)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QString folder = temporary.filePath("killed");
    ASSERT_TRUE(recordAndKill(folder, 2));

    const auto frames
        = RecordingFile::open(QDir(folder).filePath(RecordingFormat::framesFileName)).frames;
    ASSERT_TRUE(frames.has_value());
    QFile file(QDir(folder).filePath(ExposureFormat::fileName));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray exposure = file.readAll();
    const auto count = static_cast<qsizetype>(ExposureFormat::frameCount(exposure));
    // The two files are written one after the other for each interval: the kill may fall between.
    EXPECT_GE(count, frames->count());
    EXPECT_LE(count, frames->count() + 1);
    EXPECT_GE(count, 20);
    for (qsizetype i = 0; i < std::min(count, frames->count()); ++i) {
        const auto frame = ExposureFormat::decode(exposure, static_cast<std::size_t>(i));
        ASSERT_TRUE(frame.has_value());
        EXPECT_EQ(frame->audioTime, frames->frame(i, false)->audioTime);
        EXPECT_NEAR(frame->sample.duration, 0.1, 1e-9);
        EXPECT_GT(frame->sample.energyTime, 0.0);
        EXPECT_GT(frame->sample.cPeakPower, 0.0);
    }
}
