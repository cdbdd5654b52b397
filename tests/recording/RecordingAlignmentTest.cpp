#include <gtest/gtest.h>

#include <cmath>

#include <QDir>
#include <QTemporaryDir>

#include "recording/RecordingFile.h"
#include "recording/RecordingSignals.h"
#include "recording/SessionRecorder.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

class RecordingAlignment : public ::testing::TestWithParam<double> { };

} // namespace

// Replay lines the sound up with the frames by taking the encoder's priming off; this is the
// check that what is taken off is what the encoder really wrote.
TEST_P(RecordingAlignment, AClickDecodesAtItsAudioTimeWithinAMillisecondOnceTheEncoderDelayIsOff)
{
    const double inputRate = GetParam();
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    auto created = SessionRecorder::create(temporary.path(), sessionStart(), true);
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<SessionRecorder>>(created));
    auto recorder = std::get<std::shared_ptr<SessionRecorder>>(created);

    std::vector<float> signal = silence(static_cast<std::size_t>(inputRate * 3.0));
    // An odd position, off every block and frame boundary.
    const auto clickSample = static_cast<std::size_t>(inputRate * 1.2345);
    signal[clickSample] = 0.9f;
    feed(*recorder, signal, Feed {inputRate});
    recorder->waitUntilWritten();
    const std::optional<int> delay = recorder->state().encoderDelay;
    const std::optional<int> fileRate = recorder->state().fileSampleRate;
    ASSERT_TRUE(delay.has_value());
    ASSERT_TRUE(fileRate.has_value());
    EXPECT_GT(*delay, 0) << "ADTS carries no priming, so the delay must be known";
    recorder->finish();

    const Decoded audio = decode(QDir(temporary.path()).filePath(RecordingFormat::audioFileName));
    ASSERT_TRUE(audio.error.isEmpty());
    ASSERT_EQ(audio.sampleRate, *fileRate);
    const std::size_t loudest = loudestIndex(audio.samples);
    // Decimation by four spreads a one-sample click, so it is well under its 0.9 here.
    EXPECT_GT(std::fabs(audio.samples[loudest]), 0.1f);
    const double clickTime = static_cast<double>(clickSample) / inputRate;
    const double decodedTime = static_cast<double>(static_cast<std::int64_t>(loudest) - *delay)
        / static_cast<double>(*fileRate);
    EXPECT_NEAR(decodedTime, clickTime, 0.001)
        << "decoded at sample " << loudest << ", encoder delay " << *delay;

    // The frame that closed with the click's block tells the same time to within that block.
    const auto frames
        = RecordingFile::open(QDir(temporary.path()).filePath(RecordingFormat::framesFileName))
              .frames;
    ASSERT_TRUE(frames.has_value());
    const auto before = frames->lastIndexAtOrBefore(clickTime);
    ASSERT_TRUE(before.has_value());
    ASSERT_LT(*before + 1, frames->count());
    EXPECT_LE(*frames->audioTime(*before), clickTime);
    EXPECT_GT(*frames->audioTime(*before + 1), clickTime);
}

INSTANTIATE_TEST_SUITE_P(SessionRecorder, RecordingAlignment,
    ::testing::Values(48000.0, 44100.0, 96000.0, 88200.0, 192000.0),
    [](const ::testing::TestParamInfo<double>& param) {
        return "At" + std::to_string(static_cast<int>(param.param)) + "Hz";
    });
