#pragma once

// Audio fixtures the tests write for themselves: a WAV writer of our own, and FLAC, AAC and MP3
// through FFmpeg's encoders, so that no audio file lives in the repository and no ffmpeg binary
// is needed.
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ostrel::testing {

// A fresh path in the build tree, named after the running test so that tests run in parallel
// never share a file.
std::filesystem::path fixturePath(const std::string& name);

std::vector<float> sine(double frequency, double amplitude, int sampleRate, std::size_t frames);
// Channel by channel in, frame by frame out; all channels as long as the first.
std::vector<float> interleave(const std::vector<std::vector<float>>& channels);

enum class WavEncoding { pcm16, float32 };

// 16-bit quantises by 32768 and clips; a value k / 32768 comes back exactly.
void writeWav(const std::filesystem::path& path, std::span<const float> interleaved, int channels,
    int sampleRate, WavEncoding encoding);

bool encoderAvailable(const std::string& encoderName);

// Encodes with FFmpeg's encoder `encoderName` into the container `muxerName` ("flac", "adts",
// "mp3"). An error message, or nothing on success.
std::optional<std::string> encodeFile(const std::filesystem::path& path,
    const std::string& muxerName, const std::string& encoderName,
    std::span<const float> interleaved, int channels, int sampleRate, std::int64_t bitRate = 0);

// The level in dB a sine of `amplitude` reads with no weighting and no offset.
double sineLevel(double amplitude);

} // namespace ostrel::testing
