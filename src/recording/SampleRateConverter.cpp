#include "recording/SampleRateConverter.h"
#include "audio/FFmpegError.h"

#include <array>
#include <cmath>
#include <limits>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/error.h>
#include <libswresample/swresample.h>
}

namespace ostrel {

SampleRateConverter::MakeResult SampleRateConverter::make(double inputRate, int outputRate)
{
    const double rounded = std::round(inputRate);
    if (!(rounded >= 1.0) || rounded > std::numeric_limits<int>::max() || outputRate <= 0) {
        return QStringLiteral("No converter from %1 Hz to %2 Hz.").arg(inputRate).arg(outputRate);
    }
    SwrContext* context = nullptr;
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    int result = swr_alloc_set_opts2(&context, &mono, AV_SAMPLE_FMT_FLT, outputRate, &mono,
        AV_SAMPLE_FMT_FLT, static_cast<int>(rounded), 0, nullptr);
    if (result >= 0) result = swr_init(context);
    if (result < 0) {
        swr_free(&context);
        return ffmpegErrorMessage(result);
    }
    return std::unique_ptr<SampleRateConverter>(
        new SampleRateConverter(context, inputRate, outputRate));
}

SampleRateConverter::SampleRateConverter(SwrContext* context, double inputRate, int outputRate)
    : context_(context), inputRate_(inputRate), outputRate_(outputRate)
{
}

SampleRateConverter::~SampleRateConverter()
{
    swr_free(&context_);
}

std::optional<QString> SampleRateConverter::convert(
    std::span<const float> input, std::vector<float>& output)
{
    if (input.size() > static_cast<std::size_t>(std::numeric_limits<int>::max() / 4)) {
        return QStringLiteral("The audio block is too large to convert.");
    }
    return run(input.data(), static_cast<int>(input.size()), output);
}

std::optional<QString> SampleRateConverter::flush(std::vector<float>& output)
{
    return run(nullptr, 0, output);
}

std::optional<QString> SampleRateConverter::run(
    const float* input, int count, std::vector<float>& output)
{
    const int capacity = swr_get_out_samples(context_, count);
    if (capacity < 0) return ffmpegErrorMessage(capacity);
    output.resize(static_cast<std::size_t>(capacity) + 64);
    const auto* in = reinterpret_cast<const std::uint8_t*>(input);
    auto* out = reinterpret_cast<std::uint8_t*>(output.data());
    const int converted = swr_convert(
        context_, &out, static_cast<int>(output.size()), input != nullptr ? &in : nullptr, count);
    if (converted < 0) {
        output.clear();
        return ffmpegErrorMessage(converted);
    }
    output.resize(static_cast<std::size_t>(converted));
    return std::nullopt;
}

} // namespace ostrel
