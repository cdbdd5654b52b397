#include "measurement/OverlapSaveConvolver.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include <fftw3.h>

#include "measurement/FftwPlanner.h"

namespace ostrel {

// One transform size: its plans, its buffers, and the filter's spectrum at that size.
struct OverlapSaveConvolver::Stage {
    std::size_t size = 0;
    float* time = nullptr;
    fftwf_complex* spectrum = nullptr;
    fftwf_complex* kernel = nullptr;
    fftwf_plan forward = nullptr;
    fftwf_plan inverse = nullptr;

    Stage(std::size_t transformSize, std::span<const float> taps) : size(transformSize)
    {
        const std::size_t bins = size / 2 + 1;
        time = fftwf_alloc_real(size);
        spectrum = fftwf_alloc_complex(bins);
        kernel = fftwf_alloc_complex(bins);
        {
            const std::lock_guard lock(fftwPlannerMutex());
            const int n = static_cast<int>(size);
            forward = fftwf_plan_dft_r2c_1d(n, time, spectrum, FFTW_ESTIMATE);
            inverse = fftwf_plan_dft_c2r_1d(n, spectrum, time, FFTW_ESTIMATE);
        }
        // Correlating with the taps is convolving with them reversed; the inverse transform's
        // factor of `size` is folded in here, once.
        std::fill_n(time, size, 0.0F);
        for (std::size_t j = 0; j < taps.size(); ++j)
            time[j] = taps[taps.size() - 1 - j] / static_cast<float>(size);
        fftwf_execute(forward);
        std::copy_n(&spectrum[0][0], 2 * bins, &kernel[0][0]);
    }

    ~Stage()
    {
        {
            const std::lock_guard lock(fftwPlannerMutex());
            if (forward) fftwf_destroy_plan(forward);
            if (inverse) fftwf_destroy_plan(inverse);
        }
        fftwf_free(time);
        fftwf_free(spectrum);
        fftwf_free(kernel);
    }

    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
};

OverlapSaveConvolver::OverlapSaveConvolver(std::span<const float> taps) : tapCount_(taps.size())
{
    for (std::size_t i = 0; i < transformSizes.size(); ++i)
        stages_[i] = std::make_unique<Stage>(transformSizes[i], taps);
}

OverlapSaveConvolver::~OverlapSaveConvolver() = default;

void OverlapSaveConvolver::correlate(const float* in, std::size_t count, float* out) noexcept
{
    const std::size_t history = tapCount_ - 1;
    while (count > 0) {
        Stage* stage = stages_.back().get();
        for (const auto& candidate : stages_) {
            if (candidate->size - history >= count) {
                stage = candidate.get();
                break;
            }
        }
        const std::size_t part = std::min(count, stage->size - history);
        const std::size_t length = part + history;
        std::copy_n(in, length, stage->time);
        std::fill(stage->time + length, stage->time + stage->size, 0.0F);
        fftwf_execute(stage->forward);
        const std::size_t bins = stage->size / 2 + 1;
        for (std::size_t k = 0; k < bins; ++k) {
            const float re = stage->spectrum[k][0];
            const float im = stage->spectrum[k][1];
            const float kr = stage->kernel[k][0];
            const float ki = stage->kernel[k][1];
            stage->spectrum[k][0] = re * kr - im * ki;
            stage->spectrum[k][1] = re * ki + im * kr;
        }
        fftwf_execute(stage->inverse);
        // The circular wrap touches only the first `history` outputs; the rest are the block's.
        std::copy_n(stage->time + history, part, out);
        in += part;
        out += part;
        count -= part;
    }
}

} // namespace ostrel
