#include "recording/RecordingSignals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "audio/AudioFileDecoder.h"

namespace ostrel::recording_test {

Date sessionStart()
{
    return Date {} + std::chrono::hours(24 * 365 * 56);
}

MeasurementInterval interval(std::int64_t sampleCount, double sampleRate, double level)
{
    MeasurementInterval result;
    result.sampleCount = sampleCount;
    result.sampleRate = sampleRate;
    result.energy = 0.25 * static_cast<double>(sampleCount);
    result.peakPower = 0.5;
    result.level = level;
    result.maxLevel = level + 1.0;
    result.rawEnergy = 0.125 * static_cast<double>(sampleCount);
    result.exposureEnergy = 0.2 * static_cast<double>(sampleCount);
    result.exposurePeakPower = 0.75;
    Spectrum& spectrum = result.spectrum.emplace();
    spectrum.bandLevels.fill(level - 10.0);
    spectrum.fineBandLevels.fill(level - 20.0);
    spectrum.dominantFrequency = 440.0;
    return result;
}

int feed(SessionRecorder& recorder, std::span<const float> signal, const Feed& options)
{
    static constexpr std::array<std::size_t, 5> blockSizes {480, 1024, 4800, 333, 2048};
    const auto tenth = static_cast<std::int64_t>(options.sampleRate / 10.0);
    std::int64_t gathered = 0;
    int tenths = 0;
    int intervals = 0;
    std::size_t position = 0;
    std::size_t blockIndex = 0;
    while (position < signal.size()) {
        const std::size_t wanted = options.blockSize > 0
            ? options.blockSize
            : blockSizes[blockIndex++ % blockSizes.size()];
        const std::size_t size = std::min(wanted, signal.size() - position);
        const std::span<const float> block = signal.subspan(position, size);
        position += size;
        gathered += static_cast<std::int64_t>(size);
        std::optional<MeasurementInterval> closed;
        if (gathered >= tenth) {
            ++tenths;
            if (tenths % options.intervalEvery == 0) {
                closed = interval(gathered, options.sampleRate, 60.0 + tenths % 40);
                ++intervals;
            }
            gathered = 0;
        }
        const double seconds
            = static_cast<double>(options.startSample + static_cast<std::int64_t>(position))
            / options.sampleRate;
        recorder.append(block, options.sampleRate, closed, addingSeconds(sessionStart(), seconds));
    }
    return intervals;
}

std::vector<float> silence(std::size_t count)
{
    return std::vector<float>(count, 0.0f);
}

std::vector<float> sine(std::size_t count, double sampleRate, double frequency, float amplitude)
{
    std::vector<float> result(count);
    for (std::size_t i = 0; i < count; ++i) {
        result[i] = amplitude
            * static_cast<float>(
                std::sin(2.0 * std::numbers::pi * frequency * static_cast<double>(i) / sampleRate));
    }
    return result;
}

std::vector<float> busySignal(std::size_t count, double sampleRate)
{
    std::vector<float> result = sine(count, sampleRate, 440.0, 0.2f);
    std::uint32_t state = 1;
    for (float& sample : result) {
        state = state * 1664525u + 1013904223u;
        sample += 0.05f * (static_cast<float>(state >> 8) / 16777216.0f - 0.5f);
    }
    return result;
}

Decoded decode(const QString& path)
{
    Decoded result;
    auto opened = AudioFileDecoder::open(path.toStdString());
    if (const std::string* error = std::get_if<std::string>(&opened)) {
        result.error = QString::fromStdString(*error);
        return result;
    }
    auto& decoder = *std::get<std::unique_ptr<AudioFileDecoder>>(opened);
    result.sampleRate = decoder.sampleRate();
    std::vector<float> chunk;
    while (decoder.read(chunk, 8192) > 0) {
        for (std::size_t i = 0; i < chunk.size();
             i += static_cast<std::size_t>(decoder.channelCount())) {
            result.samples.push_back(chunk[i]);
        }
    }
    result.error = QString::fromStdString(decoder.error());
    return result;
}

std::size_t loudestIndex(std::span<const float> samples)
{
    const auto loudest = std::max_element(samples.begin(), samples.end(),
        [](float a, float b) { return std::fabs(a) < std::fabs(b); });
    return static_cast<std::size_t>(loudest - samples.begin());
}

} // namespace ostrel::recording_test
