#pragma once

// The microphone correction as a 1023-tap linear-phase FIR filter in front of the level meter.
// Delay 511 samples. Designed outside the audio thread; `process` reuses its buffers.
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "measurement/MicrophoneCorrection.h"
#include "measurement/OverlapSaveConvolver.h"

namespace ostrel {

class CorrectionFilter {
public:
    static constexpr int tapCount = 1023;

    // How a block is filtered: summed tap by tap, or through FFTs. Both give the same output to
    // float rounding.
    enum class Form { direct, overlapSave };
    // From this block size on the FFT form is the cheaper one (measured by the benchmarks).
    static constexpr std::size_t overlapSaveFromBlock = 128;

    CorrectionFilter(const MicrophoneCorrection& correction, double sampleRate);
    // A copy plans its own transforms: for snapshots off the audio thread.
    CorrectionFilter(const CorrectionFilter& other);
    CorrectionFilter& operator=(const CorrectionFilter& other);
    CorrectionFilter(CorrectionFilter&&) noexcept = default;
    CorrectionFilter& operator=(CorrectionFilter&&) noexcept = default;
    ~CorrectionFilter();

    // Frequency-sampling design: 8192-point inverse transform, Blackman window, centred on tap 511.
    static std::vector<float> design(const MicrophoneCorrection& correction, double sampleRate);

    // Filters a block; the result stays valid until the next call. Continuous across blocks of
    // any size. Grows its buffers only for a block larger than any before.
    std::span<const float> process(std::span<const float> samples);
    std::span<const float> process(std::span<const float> samples, Form form);
    void reset() noexcept;
    double magnitude(double frequency, double sampleRate) const noexcept;
    const std::vector<float>& taps() const noexcept { return taps_; }

private:
    std::vector<float> taps_;
    std::vector<float> input_; // history (tapCount - 1) followed by the block
    std::vector<float> output_;
    std::unique_ptr<OverlapSaveConvolver> convolver_;
};

} // namespace ostrel
