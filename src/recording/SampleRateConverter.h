#pragma once

// Brings the microphone's rate down to the recording's when the interface runs faster than AAC
// is worth (96 kHz becomes 48 kHz). One stream for a whole show, so the filter state carries
// over from block to block and nothing clicks at block edges.
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include <QString>

struct SwrContext;

namespace ostrel {

class SampleRateConverter {
public:
    using MakeResult = std::variant<std::unique_ptr<SampleRateConverter>, QString>;
    static MakeResult make(double inputRate, int outputRate);

    ~SampleRateConverter();
    SampleRateConverter(const SampleRateConverter&) = delete;
    SampleRateConverter& operator=(const SampleRateConverter&) = delete;

    double inputRate() const noexcept { return inputRate_; }
    int outputRate() const noexcept { return outputRate_; }

    // Replaces `output` with what this block gives; it may be a few samples short, which the
    // converter keeps for the next block. Nothing on success, else why.
    std::optional<QString> convert(std::span<const float> input, std::vector<float>& output);
    // What the converter still holds, at the end of the stream.
    std::optional<QString> flush(std::vector<float>& output);

private:
    SampleRateConverter(SwrContext* context, double inputRate, int outputRate);
    std::optional<QString> run(const float* input, int count, std::vector<float>& output);

    SwrContext* context_;
    double inputRate_;
    int outputRate_;
};

} // namespace ostrel
