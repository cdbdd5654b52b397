#pragma once

// A long FIR filter by FFT, one block at a time and with no delay of its own: each block is
// filtered with the smallest transform that holds it and the filter's history (overlap-save
// with a hop the size of the block). Everything is planned and allocated at construction, so
// filtering allocates nothing.
#include <array>
#include <cstddef>
#include <memory>
#include <span>

namespace ostrel {

class OverlapSaveConvolver {
public:
    static constexpr std::array<std::size_t, 3> transformSizes {2048, 4096, 8192};

    // `taps` of at most 1024 values.
    explicit OverlapSaveConvolver(std::span<const float> taps);
    ~OverlapSaveConvolver();
    OverlapSaveConvolver(const OverlapSaveConvolver&) = delete;
    OverlapSaveConvolver& operator=(const OverlapSaveConvolver&) = delete;

    // out[n] = sum over j of in[n + j] x taps[j], for n below `count`; `in` holds count + taps - 1
    // samples. A block longer than the largest transform holds is done in parts.
    void correlate(const float* in, std::size_t count, float* out) noexcept;

private:
    struct Stage;

    std::size_t tapCount_;
    std::array<std::unique_ptr<Stage>, transformSizes.size()> stages_;
};

} // namespace ostrel
