#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>

#include "audio/AudioFileDecoder.h"
#include "tools/TestAudioFiles.h"

using namespace ostrel;
using namespace ostrel::testing;

namespace {

std::unique_ptr<AudioFileDecoder> openOrFail(const std::filesystem::path& path)
{
    auto opened = AudioFileDecoder::open(path.string());
    if (const auto* error = std::get_if<std::string>(&opened)) {
        ADD_FAILURE() << "cannot open " << path << ": " << *error;
        return nullptr;
    }
    return std::move(std::get<std::unique_ptr<AudioFileDecoder>>(opened));
}

std::string openError(const std::filesystem::path& path)
{
    const auto opened = AudioFileDecoder::open(path.string());
    const auto* error = std::get_if<std::string>(&opened);
    EXPECT_NE(error, nullptr) << path << " opened";
    return error ? *error : std::string();
}

// Reads in `chunk`-frame steps to the end and checks that the decoder ends cleanly.
std::vector<float> readAll(AudioFileDecoder& decoder, std::size_t chunk)
{
    std::vector<float> all;
    std::vector<float> part;
    for (;;) {
        const std::size_t frames = decoder.read(part, chunk);
        EXPECT_EQ(part.size(), frames * static_cast<std::size_t>(decoder.channelCount()));
        all.insert(all.end(), part.begin(), part.end());
        if (frames < chunk) break;
    }
    EXPECT_EQ(decoder.read(part, chunk), 0u);
    EXPECT_EQ(decoder.error(), "");
    return all;
}

// Values k / 32768 survive 16-bit PCM exactly, so a lossless path must return them unchanged.
std::vector<float> exactSixteenBitRamp(std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t index = 0; index < count; ++index) {
        const auto step = static_cast<int>(index % 2001) - 1000;
        samples[index] = static_cast<float>(step * 7) / 32768.0f;
    }
    return samples;
}

double meanSquareOfChannel(
    const std::vector<float>& interleaved, int channels, int channel, std::size_t skipFrames)
{
    double sum = 0.0;
    std::size_t count = 0;
    for (std::size_t index = skipFrames * channels + channel; index < interleaved.size();
         index += channels) {
        sum += static_cast<double>(interleaved[index]) * interleaved[index];
        ++count;
    }
    return count ? sum / static_cast<double>(count) : 0.0;
}

} // namespace

TEST(AudioFileDecoderTest, ReadsSixteenBitWavExactly)
{
    const auto samples = exactSixteenBitRamp(2 * 10007);
    const auto path = fixturePath("ramp.wav");
    writeWav(path, samples, 2, 44100, WavEncoding::pcm16);

    auto decoder = openOrFail(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->sampleRate(), 44100);
    EXPECT_EQ(decoder->channelCount(), 2);
    ASSERT_TRUE(decoder->durationSeconds());
    EXPECT_NEAR(*decoder->durationSeconds(), 10007.0 / 44100.0, 0.001);
    EXPECT_EQ(readAll(*decoder, 1000), samples);
}

TEST(AudioFileDecoderTest, ReadsFloatWavExactlyInAnyChunkSize)
{
    const auto samples = sine(440.0, 0.8, 48000, 12345);
    const auto path = fixturePath("sine.wav");
    writeWav(path, samples, 1, 48000, WavEncoding::float32);

    for (std::size_t chunk : {1u, 4800u, 100000u}) {
        auto decoder = openOrFail(path);
        ASSERT_TRUE(decoder);
        EXPECT_EQ(decoder->channelCount(), 1);
        EXPECT_EQ(readAll(*decoder, chunk), samples) << "chunk " << chunk;
    }
}

TEST(AudioFileDecoderTest, FlacIsLossless)
{
    const auto samples = exactSixteenBitRamp(3 * 9000);
    const auto path = fixturePath("ramp.flac");
    ASSERT_EQ(encodeFile(path, "flac", "flac", samples, 3, 32000), std::nullopt);

    auto decoder = openOrFail(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->codecName(), "flac");
    EXPECT_EQ(decoder->sampleRate(), 32000);
    EXPECT_EQ(decoder->channelCount(), 3);
    EXPECT_EQ(readAll(*decoder, 777), samples);
}

TEST(AudioFileDecoderTest, PlanarAacComesOutInterleavedWithChannelsInOrder)
{
    const std::size_t frames = 48000;
    const auto left = sine(1000.0, 0.1, 48000, frames);
    const std::vector<float> right(frames, 0.0f);
    const auto path = fixturePath("left.aac");
    ASSERT_EQ(
        encodeFile(path, "adts", "aac", interleave({left, right}), 2, 48000, 128000), std::nullopt);

    auto decoder = openOrFail(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->codecName(), "aac");
    EXPECT_EQ(decoder->channelCount(), 2);
    const auto decoded = readAll(*decoder, 4800);
    // The encoder adds a frame of delay, so the decoded length is close but not equal.
    EXPECT_NEAR(static_cast<double>(decoded.size()) / 2.0, static_cast<double>(frames), 2048.0);
    const double leftLevel = 10.0 * std::log10(meanSquareOfChannel(decoded, 2, 0, 4800));
    const double rightLevel = 10.0 * std::log10(meanSquareOfChannel(decoded, 2, 1, 4800) + 1e-30);
    EXPECT_NEAR(leftLevel, sineLevel(0.1), 0.1);
    // Swapped or mixed channels would put the tone on the right too.
    EXPECT_LT(rightLevel, leftLevel - 60.0);
}

TEST(AudioFileDecoderTest, NameWithAColonIsAFileNotAProtocol)
{
    const auto samples = sine(1000.0, 0.5, 8000, 800);
    const auto path = fixturePath("http:odd.wav");
    writeWav(path, samples, 1, 8000, WavEncoding::float32);
    auto decoder = openOrFail(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(readAll(*decoder, 800), samples);
}

TEST(AudioFileDecoderTest, EmptyWavOpensAndEndsAtOnce)
{
    const auto path = fixturePath("empty.wav");
    writeWav(path, std::vector<float> {}, 2, 48000, WavEncoding::pcm16);
    auto decoder = openOrFail(path);
    ASSERT_TRUE(decoder);
    EXPECT_EQ(decoder->sampleRate(), 48000);
    EXPECT_EQ(decoder->channelCount(), 2);
    EXPECT_TRUE(readAll(*decoder, 100).empty());
}

TEST(AudioFileDecoderTest, MissingFileSaysWhy)
{
    EXPECT_EQ(openError(fixturePath("nothing-here.wav")), "No such file or directory");
}

TEST(AudioFileDecoderTest, RandomBytesAreNotAudio)
{
    const auto path = fixturePath("noise.bin");
    std::mt19937 random(20240611);
    std::ofstream out(path, std::ios::binary);
    for (int index = 0; index < 64 * 1024; ++index)
        out.put(static_cast<char>(random() & 0xff));
    out.close();
    EXPECT_NE(openError(path), "");
}

TEST(AudioFileDecoderTest, TextIsNotAudio)
{
    const auto path = fixturePath("notes.txt");
    std::ofstream(path) << "Act 1, scene 2: thunder.\n";
    EXPECT_NE(openError(path), "");
}

TEST(AudioFileDecoderTest, DirectoryIsNotAudio)
{
    const auto path = fixturePath("folder");
    std::filesystem::create_directories(path);
    EXPECT_NE(openError(path), "");
}
