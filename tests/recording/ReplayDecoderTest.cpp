#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include <QDir>
#include <QTemporaryDir>

#include "audio/FFmpegReplayAudio.h"
#include "audio/ReplayDecoder.h"
#include "recording/RecordingSignals.h"
#include "recording/SessionRecorder.h"
#include "sessions/RecordingFormat.h"

using namespace ostrel;
using namespace ostrel::recording_test;

namespace {

// Records `signal` at 48 kHz the way a show is recorded and returns the sound's path.
QString recordedSound(const QTemporaryDir& folder, const std::vector<float>& signal)
{
    auto created = SessionRecorder::create(folder.path(), sessionStart(), true);
    if (!std::holds_alternative<std::shared_ptr<SessionRecorder>>(created)) return {};
    auto recorder = std::get<std::shared_ptr<SessionRecorder>>(created);
    feed(*recorder, signal, Feed {48000.0});
    recorder->finish();
    return QDir(folder.path()).filePath(RecordingFormat::audioFileName);
}

std::unique_ptr<ReplayDecoder> openDecoder(const QString& path)
{
    auto opened = ReplayDecoder::open(path.toStdString());
    if (auto* failure = std::get_if<std::string>(&opened)) {
        ADD_FAILURE() << *failure;
        return nullptr;
    }
    return std::move(std::get<std::unique_ptr<ReplayDecoder>>(opened));
}

std::vector<float> readFrom(ReplayDecoder& decoder, std::int64_t start, std::size_t count)
{
    std::vector<float> samples(count);
    EXPECT_TRUE(decoder.seek(start));
    samples.resize(decoder.read(samples.data(), count));
    return samples;
}

} // namespace

TEST(ReplayDecoder, LengthIsEverySampleTheFileDecodesTo)
{
    QTemporaryDir folder;
    const QString path = recordedSound(folder, busySignal(48000 * 3, 48000.0));
    const Decoded whole = decode(path);
    ASSERT_TRUE(whole.error.isEmpty());
    auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->sampleRate(), 48000);
    EXPECT_EQ(decoder->length(), static_cast<std::int64_t>(whole.samples.size()));
}

// Tones: on noise the encoder substitutes noise bands that the decoder fills from its own random
// generator, and no two decodes of those agree.
std::vector<float> chord(std::size_t count)
{
    std::vector<float> samples = sine(count, 48000.0, 440.0, 0.4F);
    const std::vector<float> fifth = sine(count, 48000.0, 660.0, 0.2F);
    const std::vector<float> high = sine(count, 48000.0, 3150.0, 0.1F);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] += fifth[i] + high[i];
    return samples;
}

TEST(ReplayDecoder, SeekDecodesTheSameSamplesAsReadingFromTheStart)
{
    QTemporaryDir folder;
    const QString path = recordedSound(folder, chord(48000 * 3));
    const std::vector<float> whole = decode(path).samples;
    auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder);
    for (const std::int64_t start : {0, 500, 1024, 2047, 5000, 48017, 120'000}) {
        const std::vector<float> read = readFrom(*decoder, start, 4096);
        ASSERT_EQ(read.size(), 4096U) << start;
        // Within 80 dB: the encoder still fills a few empty bands with noise, which the decoder
        // draws from its own generator. A sample's shift would be off by a hundred times more.
        for (std::size_t i = 0; i < read.size(); ++i)
            ASSERT_NEAR(read[i], whole[static_cast<std::size_t>(start) + i], 1e-4)
                << "from " << start << " at " << i;
    }
}

TEST(ReplayDecoder, ReadStopsAtTheEndAndSeekPastItFails)
{
    QTemporaryDir folder;
    const QString path = recordedSound(folder, busySignal(48000, 48000.0));
    auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder);
    const std::vector<float> tail = readFrom(*decoder, decoder->length() - 100, 4096);
    EXPECT_EQ(tail.size(), 100U);
    EXPECT_FALSE(decoder->seek(decoder->length()));
    EXPECT_TRUE(decoder->error().empty());
}

TEST(ReplayDecoder, FileThatIsNoSoundDoesNotOpen)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("audio.aac"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4000, 'x'));
    file.close();
    EXPECT_TRUE(std::holds_alternative<std::string>(ReplayDecoder::open(path.toStdString())));
    EXPECT_TRUE(std::holds_alternative<std::string>(
        ReplayDecoder::open(folder.filePath(QStringLiteral("missing.aac")).toStdString())));
}

// The start of the sound at a position is the recorded sample of that time: the encoder's
// priming is taken off.
TEST(FFmpegReplayAudio, SoundFromAPositionLinesUpWithTheRecordedTime)
{
    std::vector<float> signal = silence(48000 * 3);
    const std::size_t click = 48000 + 48000 / 2 + 77; // 1.5016 s
    signal[click] = 0.9F;
    QTemporaryDir folder;
    const QString path = recordedSound(folder, signal);
    auto decoder = openDecoder(path);
    ASSERT_TRUE(decoder);
    const double position = 1.5;
    const auto start = static_cast<std::int64_t>(std::trunc(position * 48000.0))
        + FFmpegReplayAudio::primingFrames;
    const std::vector<float> heard = readFrom(*decoder, start, 4800);
    ASSERT_EQ(heard.size(), 4800U);
    const double clickSeconds = static_cast<double>(loudestIndex(heard)) / 48000.0;
    EXPECT_NEAR(clickSeconds, static_cast<double>(click) / 48000.0 - position, 0.001);
}

TEST(FFmpegReplayAudio, DurationLeavesOutThePriming)
{
    QTemporaryDir folder;
    const QString path = recordedSound(folder, busySignal(48000 * 2, 48000.0));
    const auto length = static_cast<double>(decode(path).samples.size());
    auto opened = FFmpegReplayAudio::open(path, QAudioDevice());
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<FFmpegReplayAudio>>(opened));
    auto& sound = std::get<std::unique_ptr<FFmpegReplayAudio>>(opened);
    EXPECT_EQ(sound->sampleRate(), 48000.0);
    EXPECT_DOUBLE_EQ(sound->duration(), (length - 1024.0) / 48000.0);
    // No output device: it can't be played, and it has no clock.
    EXPECT_FALSE(sound->play(0.5));
    EXPECT_FALSE(sound->currentSeconds().has_value());
    // Past the end there is nothing to play, which is no failure.
    EXPECT_TRUE(sound->play(sound->duration() + 1.0));
}
