#include "measurement/CorrectionFilter.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <memory>
#include <mutex>
#include <numbers>

#include <fftw3.h>

#include "measurement/FftwPlanner.h"
#include "measurement/FiniteSamples.h"

namespace ostrel {

namespace {

constexpr int transformSize = 8192;
constexpr int centreTap = CorrectionFilter::tapCount / 2;
constexpr std::size_t historyLength = CorrectionFilter::tapCount - 1;
constexpr double lowestDesignFrequency = 20.0;
constexpr double highestDesignFrequency = 20000.0;
constexpr double referenceFrequency = 1000.0;
constexpr double responseLimit = 20.0;

struct FftwFree {
    void operator()(fftwf_complex* data) const noexcept { fftwf_free(data); }
};
using ComplexBuffer = std::unique_ptr<fftwf_complex[], FftwFree>;

double inverseAmplitude(const MicrophoneCorrection& correction, double frequency) noexcept
{
    const double difference
        = correction.rawResponse(frequency) - correction.rawResponse(referenceFrequency);
    if (difference > responseLimit) return 0.1;
    const double response = std::clamp(difference, -responseLimit, responseLimit);
    return std::sqrt(std::pow(10.0, -response / 10.0));
}

// A fixed width is what the compiler vectorises at -O2, and a local accumulator can't alias the
// input. Narrow widths are latency-bound, so blocks use the widest that fits first.
template <std::size_t lanes>
std::size_t convolveLanes(
    const float* in, const float* taps, float* out, std::size_t n, std::size_t count) noexcept
{
    for (; n + lanes <= count; n += lanes) {
        float sums[lanes] = {};
        for (std::size_t j = 0; j < static_cast<std::size_t>(CorrectionFilter::tapCount); ++j) {
            const float tap = taps[j];
            const float* const x = in + n + j;
            for (std::size_t lane = 0; lane < lanes; ++lane)
                sums[lane] += x[lane] * tap;
        }
        std::copy_n(sums, lanes, out + n);
    }
    return n;
}

} // namespace

CorrectionFilter::CorrectionFilter(const MicrophoneCorrection& correction, double sampleRate)
    : taps_(design(correction, sampleRate)),
      input_(historyLength, 0.0f),
      convolver_(std::make_unique<OverlapSaveConvolver>(taps_))
{
}

CorrectionFilter::CorrectionFilter(const CorrectionFilter& other)
    : taps_(other.taps_),
      input_(other.input_),
      output_(other.output_),
      convolver_(std::make_unique<OverlapSaveConvolver>(taps_))
{
}

CorrectionFilter& CorrectionFilter::operator=(const CorrectionFilter& other)
{
    if (this != &other) *this = CorrectionFilter(other);
    return *this;
}

CorrectionFilter::~CorrectionFilter() = default;

std::vector<float> CorrectionFilter::design(
    const MicrophoneCorrection& correction, double sampleRate)
{
    std::vector<float> taps(tapCount, 0.0f);

    const ComplexBuffer spectrum(fftwf_alloc_complex(transformSize));
    const ComplexBuffer impulse(fftwf_alloc_complex(transformSize));
    if (!spectrum || !impulse) return taps;
    std::fill_n(&spectrum[0][0], 2 * transformSize, 0.0f);

    for (int k = 0; k <= transformSize / 2; ++k) {
        const double frequency = std::clamp(
            sampleRate * k / transformSize, lowestDesignFrequency, highestDesignFrequency);
        const auto amplitude = static_cast<float>(inverseAmplitude(correction, frequency));
        spectrum[k][0] = amplitude;
        if (k > 0 && k < transformSize / 2) spectrum[transformSize - k][0] = amplitude;
    }

    fftwf_plan plan = nullptr;
    {
        const std::lock_guard lock(fftwPlannerMutex());
        plan = fftwf_plan_dft_1d(
            transformSize, spectrum.get(), impulse.get(), FFTW_BACKWARD, FFTW_ESTIMATE);
    }
    if (!plan) return taps;
    fftwf_execute(plan);
    {
        const std::lock_guard lock(fftwPlannerMutex());
        fftwf_destroy_plan(plan);
    }

    constexpr double windowSpan = tapCount - 1;
    for (int i = 0; i < tapCount; ++i) {
        const double window = 0.42 - 0.5 * std::cos(2.0 * std::numbers::pi * i / windowSpan)
            + 0.08 * std::cos(4.0 * std::numbers::pi * i / windowSpan);
        const int source = (i - centreTap + transformSize) % transformSize;
        taps[static_cast<std::size_t>(i)]
            = static_cast<float>(impulse[source][0] / transformSize * window);
    }
    return taps;
}

std::span<const float> CorrectionFilter::process(std::span<const float> samples)
{
    return process(
        samples, samples.size() >= overlapSaveFromBlock ? Form::overlapSave : Form::direct);
}

std::span<const float> CorrectionFilter::process(std::span<const float> samples, Form form)
{
    const std::size_t count = samples.size();
    if (input_.size() < count + historyLength) input_.resize(count + historyLength);
    if (output_.size() < count) output_.resize(count);

    // A non-finite sample would stay in the history for the filter's whole length.
    FiniteSamples::copy(samples, input_.data() + historyLength);

    const float* const in = input_.data();
    const float* const taps = taps_.data();
    float* const out = output_.data();

    if (form == Form::overlapSave) {
        convolver_->correlate(in, count, out);
    } else {
        // Every output sums its taps in the same order, whatever the block size.
        std::size_t n = convolveLanes<64>(in, taps, out, 0, count);
        n = convolveLanes<32>(in, taps, out, n, count);
        n = convolveLanes<8>(in, taps, out, n, count);
        convolveLanes<1>(in, taps, out, n, count);
    }

    if (count > 0)
        std::copy_n(
            input_.begin() + static_cast<std::ptrdiff_t>(count), historyLength, input_.begin());
    return {output_.data(), count};
}

void CorrectionFilter::reset() noexcept
{
    std::fill_n(input_.begin(), historyLength, 0.0f);
}

double CorrectionFilter::magnitude(double frequency, double sampleRate) const noexcept
{
    const double omega = 2.0 * std::numbers::pi * frequency / sampleRate;
    std::complex<double> sum;
    for (std::size_t i = 0; i < taps_.size(); ++i)
        sum += static_cast<double>(taps_[i]) * std::polar(1.0, -omega * static_cast<double>(i));
    return std::abs(sum);
}

} // namespace ostrel
