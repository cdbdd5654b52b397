#include <gtest/gtest.h>

#include <cmath>

#include <QDir>
#include <QTemporaryDir>

#include "recording/RecordingSignals.h"
#include "recording/SessionRecorder.h"
#include "sessions/RecordingFormat.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

struct RateCase {
    double inputRate;
    int fileRate;
    bool converts;
};

void PrintTo(const RateCase& rate, std::ostream* out)
{
    *out << rate.inputRate << " Hz into " << rate.fileRate << " Hz";
}

class RecordingRates : public ::testing::TestWithParam<RateCase> { };

double rms(std::span<const float> samples)
{
    double sum = 0.0;
    for (const float sample : samples)
        sum += static_cast<double>(sample) * sample;
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

// Zero crossings upwards per second: the tone's frequency, whatever the file's rate.
double frequency(std::span<const float> samples, int sampleRate)
{
    int crossings = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (samples[i - 1] < 0.0f && samples[i] >= 0.0f) ++crossings;
    }
    return crossings * static_cast<double>(sampleRate) / static_cast<double>(samples.size());
}

} // namespace

TEST(RecordingFileRate, IsTheInputRateUpTo48kHzAbove44100ForItsMultiplesAnd48000Otherwise)
{
    EXPECT_EQ(SessionRecorder::fileSampleRate(96000.0), 48000);
    EXPECT_EQ(SessionRecorder::fileSampleRate(88200.0), 44100);
    EXPECT_EQ(SessionRecorder::fileSampleRate(192000.0), 48000);
    EXPECT_EQ(SessionRecorder::fileSampleRate(176400.0), 44100);
    EXPECT_EQ(SessionRecorder::fileSampleRate(64000.0), 48000);
    EXPECT_EQ(SessionRecorder::fileSampleRate(48000.0), 48000);
    EXPECT_EQ(SessionRecorder::fileSampleRate(44100.0), 44100);
    EXPECT_EQ(SessionRecorder::fileSampleRate(32000.0), 32000);
}

TEST_P(RecordingRates, TheAudioFileHasTheChosenRateAndTheWholeToneAtItsPitch)
{
    const RateCase rate = GetParam();
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    auto created = SessionRecorder::create(temporary.path(), sessionStart(), true);
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<SessionRecorder>>(created));
    auto recorder = std::get<std::shared_ptr<SessionRecorder>>(created);

    const auto count = static_cast<std::size_t>(rate.inputRate * 2.0);
    const std::vector<float> tone = sine(count, rate.inputRate, 1000.0, 0.5f);
    feed(*recorder, tone, Feed {rate.inputRate});
    recorder->waitUntilWritten();
    const SessionRecorder::StateSnapshot state = recorder->state();
    EXPECT_EQ(state.fileSampleRate, rate.fileRate);
    if (rate.converts) {
        EXPECT_EQ(state.converterInputRate, rate.inputRate);
    } else {
        EXPECT_FALSE(state.converterInputRate.has_value()) << "no converter is used";
    }
    EXPECT_NEAR(state.audioSeconds, 2.0, 1e-9);
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});

    const Decoded audio = decode(QDir(temporary.path()).filePath(RecordingFormat::audioFileName));
    ASSERT_TRUE(audio.error.isEmpty()) << audio.error.toStdString();
    EXPECT_EQ(audio.sampleRate, rate.fileRate);
    // Two seconds, the encoder's priming and at most one padded frame.
    const auto expected = static_cast<std::size_t>(2 * rate.fileRate);
    EXPECT_GE(audio.samples.size(), expected + 1024);
    EXPECT_LE(audio.samples.size(), expected + 1024 + 1024);
    const std::span<const float> middle(
        audio.samples.data() + rate.fileRate / 2, static_cast<std::size_t>(rate.fileRate));
    EXPECT_NEAR(rms(middle), 0.5 / std::sqrt(2.0), 0.02);
    EXPECT_NEAR(frequency(middle, rate.fileRate), 1000.0, 2.0);
}

INSTANTIATE_TEST_SUITE_P(SessionRecorder, RecordingRates,
    ::testing::Values(RateCase {96000.0, 48000, true}, RateCase {88200.0, 44100, true},
        RateCase {192000.0, 48000, true}, RateCase {44100.0, 44100, false},
        RateCase {48000.0, 48000, false}),
    [](const ::testing::TestParamInfo<RateCase>& param) {
        return "At" + std::to_string(static_cast<int>(param.param.inputRate)) + "Hz";
    });

TEST(RecordingRateChange, TheFileKeepsItsFirstRateAndTheConverterFollowsTheInput)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    auto created = SessionRecorder::create(temporary.path(), sessionStart(), true);
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<SessionRecorder>>(created));
    auto recorder = std::get<std::shared_ptr<SessionRecorder>>(created);

    feed(*recorder, sine(48000, 48000.0, 1000.0, 0.5f), Feed {48000.0});
    recorder->waitUntilWritten();
    EXPECT_FALSE(recorder->state().converterInputRate.has_value());

    feed(*recorder, sine(96000, 96000.0, 1000.0, 0.5f), Feed {96000.0});
    recorder->waitUntilWritten();
    EXPECT_EQ(recorder->state().fileSampleRate, 48000);
    EXPECT_EQ(recorder->state().converterInputRate, 96000.0);

    feed(*recorder, sine(88200, 88200.0, 1000.0, 0.5f), Feed {88200.0});
    recorder->waitUntilWritten();
    EXPECT_EQ(recorder->state().fileSampleRate, 48000) << "the file's rate never changes";
    EXPECT_EQ(recorder->state().converterInputRate, 88200.0);

    feed(*recorder, sine(48000, 48000.0, 1000.0, 0.5f), Feed {48000.0});
    recorder->waitUntilWritten();
    EXPECT_FALSE(recorder->state().converterInputRate.has_value());
    EXPECT_NEAR(recorder->state().audioSeconds, 4.0, 1e-9);
    EXPECT_EQ(recorder->finish(), SessionRecorder::Outcome {});

    const Decoded audio = decode(QDir(temporary.path()).filePath(RecordingFormat::audioFileName));
    ASSERT_TRUE(audio.error.isEmpty());
    // The converters' last samples are flushed at each change, so no time is lost.
    EXPECT_NEAR(static_cast<double>(audio.samples.size()) / 48000.0, 4.0 + 1024.0 / 48000.0,
        1024.0 / 48000.0);
}
