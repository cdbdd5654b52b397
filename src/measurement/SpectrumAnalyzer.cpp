#include "measurement/SpectrumAnalyzer.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <numbers>
#include <utility>

#include <fftw3.h>

#include "measurement/FftwPlanner.h"
#include "measurement/FiniteSamples.h"
#include "measurement/SPLMath.h"
#include "measurement/SpectrumBand.h"

namespace ostrel {

namespace {

constexpr double wholeTone = 1.122462048309373; // 2^(1/6)
constexpr double silentBin = 1e-14;
constexpr std::int64_t excludedAroundPeak = 5; // bins closer than this belong to the peak's lobe

// Full, periodic, denormalised Hann window.
std::vector<float> hann(std::int64_t length, double* power)
{
    std::vector<float> window(static_cast<std::size_t>(length));
    double sum = 0.0;
    for (std::int64_t i = 0; i < length; ++i) {
        const double value = 0.5
            * (1.0
                - std::cos(
                    2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(length)));
        window[static_cast<std::size_t>(i)] = static_cast<float>(value);
        const double narrowed = window[static_cast<std::size_t>(i)];
        sum += narrowed * narrowed;
    }
    *power = sum;
    return window;
}

// Estimated plans: measuring would cost seconds at every device start (the first reading must
// come within a second), and measured plans ran no faster here for these sizes.
fftwf_plan planFor(std::int64_t length, float* input, float* output)
{
    std::lock_guard lock(fftwPlannerMutex());
    return fftwf_plan_dft_r2c_1d(
        static_cast<int>(length), input, reinterpret_cast<fftwf_complex*>(output), FFTW_ESTIMATE);
}

// Power per bin, scaled so that a full-scale sine sums to about 0.5 over its main lobe.
void powerSpectrum(const float* output, std::vector<double>& power, double windowPower,
    std::int64_t length, const std::vector<double>& gains)
{
    const double scale = 2.0 / (windowPower * static_cast<double>(length));
    const std::size_t count = power.size();
    power[0] = 0.0;
    for (std::size_t k = 1; k < count; ++k) {
        const double re = output[2 * k];
        const double im = output[2 * k + 1];
        power[k] = scale * (re * re + im * im);
    }
    if (!gains.empty()) {
        for (std::size_t k = 1; k < count; ++k)
            power[k] *= gains[k];
    }
}

std::vector<double> correctionGains(
    const MicrophoneCorrection& correction, double sampleRate, std::int64_t length)
{
    std::vector<double> gains(static_cast<std::size_t>(length / 2));
    for (std::size_t k = 0; k < gains.size(); ++k) {
        const double bin = static_cast<double>(std::max<std::size_t>(k, 1));
        gains[k] = correction.powerGain(sampleRate * bin / static_cast<double>(length));
    }
    return gains;
}

double weightedSum(const SpectrumAnalyzer::WeightedBand& band, const std::vector<double>& power)
{
    const auto first = static_cast<std::size_t>(band.firstBin);
    const auto last = static_cast<std::size_t>(band.lastBin);
    double sum = band.firstWeight * power[first];
    if (first < last) {
        for (std::size_t k = first + 1; k < last; ++k)
            sum += power[k];
        sum += band.lastWeight * power[last];
    }
    return sum;
}

} // namespace

std::int64_t SpectrumAnalyzer::windowSize(double sampleRate) noexcept
{
    const double exponent = std::clamp(std::round(std::log2(sampleRate * 0.34)), 12.0, 16.0);
    return std::int64_t {1} << static_cast<int>(exponent);
}

SpectrumAnalyzer::WeightedBand SpectrumAnalyzer::weightedBand(double lower, double upper,
    double sampleRate, std::int64_t length, bool usesLongWindow) noexcept
{
    const double binWidth = sampleRate / static_cast<double>(length);
    const std::int64_t binCount = length / 2;
    const double lo = lower / binWidth;
    const double hi = upper / binWidth;
    WeightedBand band;
    band.usesLongWindow = usesLongWindow;
    band.firstBin = std::min(
        std::max(static_cast<std::int64_t>(std::floor(lo + 0.5)), std::int64_t {1}), binCount - 1);
    band.lastBin = std::min(
        std::max(static_cast<std::int64_t>(std::floor(hi + 0.5)), band.firstBin), binCount - 1);
    if (band.firstBin == band.lastBin) {
        // A band narrower than a bin gets that fraction of one bin.
        band.firstWeight = hi - lo;
        band.lastWeight = 0.0;
    } else {
        band.firstWeight = (static_cast<double>(band.firstBin) + 0.5) - lo;
        band.lastWeight = hi - (static_cast<double>(band.lastBin) - 0.5);
    }
    return band;
}

SpectrumAnalyzer::SpectrumAnalyzer(double sampleRate)
    : sampleRate_(sampleRate), size_(windowSize(sampleRate)), longSize_(4 * size_)
{
    shortInput_ = fftwf_alloc_real(static_cast<std::size_t>(size_));
    longInput_ = fftwf_alloc_real(static_cast<std::size_t>(longSize_));
    shortOutput_ = fftwf_alloc_real(static_cast<std::size_t>(size_ + 2));
    longOutput_ = fftwf_alloc_real(static_cast<std::size_t>(longSize_ + 2));
    if (shortInput_ && shortOutput_) shortPlan_ = planFor(size_, shortInput_, shortOutput_);
    if (longInput_ && longOutput_) longPlan_ = planFor(longSize_, longInput_, longOutput_);

    window_ = hann(size_, &windowPower_);
    longWindow_ = hann(longSize_, &longWindowPower_);
    history_.assign(static_cast<std::size_t>(longSize_), 0.0f);
    power_.assign(static_cast<std::size_t>(size_ / 2), 0.0);
    longPower_.assign(static_cast<std::size_t>(longSize_ / 2), 0.0);

    for (const auto& band : SpectrumBand::fine()) {
        fineBands_.push_back(band.center < longWindowBelow
                ? weightedBand(band.lower, band.upper, sampleRate, longSize_, true)
                : weightedBand(band.lower, band.upper, sampleRate, size_, false));
        fineBandsShortOnly_.push_back(
            weightedBand(band.lower, band.upper, sampleRate, size_, false));
    }

    const double binWidth = sampleRate / static_cast<double>(size_);
    const std::int64_t binCount = size_ / 2;
    for (int n = -17; n <= 13; ++n) {
        const double center = 1000.0 * std::pow(10.0, n / 10.0);
        Band band;
        band.first = std::max(static_cast<std::int64_t>(std::ceil(
                                  center / SpectrumBand::thirdOctaveHalfWidth / binWidth)),
            std::int64_t {1});
        band.end = std::max(std::min(static_cast<std::int64_t>(std::ceil(
                                         center * SpectrumBand::thirdOctaveHalfWidth / binWidth)),
                                binCount),
            band.first);
        band.fallbackBin = std::min(
            std::max(static_cast<std::int64_t>(std::round(center / binWidth)), std::int64_t {1}),
            binCount - 1);
        // The band's width in bins: 10^(1/20) - 10^(-1/20) of its centre.
        band.fallbackScale = center * 0.23076751616821778 / binWidth;
        bands_.push_back(band);
    }
}

SpectrumAnalyzer::~SpectrumAnalyzer()
{
    release();
}

SpectrumAnalyzer::SpectrumAnalyzer(SpectrumAnalyzer&& other) noexcept
{
    *this = std::move(other);
}

SpectrumAnalyzer& SpectrumAnalyzer::operator=(SpectrumAnalyzer&& other) noexcept
{
    if (this == &other) return *this;
    release();
    sampleRate_ = other.sampleRate_;
    size_ = other.size_;
    longSize_ = other.longSize_;
    shortPlan_ = std::exchange(other.shortPlan_, nullptr);
    longPlan_ = std::exchange(other.longPlan_, nullptr);
    shortInput_ = std::exchange(other.shortInput_, nullptr);
    longInput_ = std::exchange(other.longInput_, nullptr);
    shortOutput_ = std::exchange(other.shortOutput_, nullptr);
    longOutput_ = std::exchange(other.longOutput_, nullptr);
    window_ = std::move(other.window_);
    longWindow_ = std::move(other.longWindow_);
    windowPower_ = other.windowPower_;
    longWindowPower_ = other.longWindowPower_;
    history_ = std::move(other.history_);
    writeIndex_ = other.writeIndex_;
    filled_ = other.filled_;
    power_ = std::move(other.power_);
    longPower_ = std::move(other.longPower_);
    bands_ = std::move(other.bands_);
    fineBands_ = std::move(other.fineBands_);
    fineBandsShortOnly_ = std::move(other.fineBandsShortOnly_);
    correctionGains_ = std::move(other.correctionGains_);
    longCorrectionGains_ = std::move(other.longCorrectionGains_);
    lastUsedLongWindow_ = other.lastUsedLongWindow_;
    other.filled_ = 0;
    return *this;
}

void SpectrumAnalyzer::release() noexcept
{
    if (shortPlan_ || longPlan_) {
        std::lock_guard lock(fftwPlannerMutex());
        if (shortPlan_) fftwf_destroy_plan(static_cast<fftwf_plan>(shortPlan_));
        if (longPlan_) fftwf_destroy_plan(static_cast<fftwf_plan>(longPlan_));
    }
    shortPlan_ = longPlan_ = nullptr;
    fftwf_free(shortInput_);
    fftwf_free(longInput_);
    fftwf_free(shortOutput_);
    fftwf_free(longOutput_);
    shortInput_ = longInput_ = shortOutput_ = longOutput_ = nullptr;
}

void SpectrumAnalyzer::setCorrection(const std::optional<MicrophoneCorrection>& correction)
{
    if (!correction) {
        correctionGains_.clear();
        longCorrectionGains_.clear();
        return;
    }
    correctionGains_ = correctionGains(*correction, sampleRate_, size_);
    longCorrectionGains_ = correctionGains(*correction, sampleRate_, longSize_);
}

void SpectrumAnalyzer::append(std::span<const float> samples) noexcept
{
    if (longSize_ <= 0) return;
    // Only the last longSize samples of a block can matter.
    const auto count = static_cast<std::int64_t>(samples.size());
    const std::int64_t start = std::max<std::int64_t>(count - longSize_, 0);
    std::int64_t remaining = count - start;
    const float* source = samples.data() + start;
    const std::int64_t written = remaining;
    while (remaining > 0) {
        const std::int64_t run = std::min(remaining, longSize_ - writeIndex_);
        // Silence for what is not finite: one NaN in the ring would blank every spectrum
        // for the ring's whole length.
        FiniteSamples::copy({source, static_cast<std::size_t>(run)}, history_.data() + writeIndex_);
        source += run;
        remaining -= run;
        writeIndex_ = (writeIndex_ + run) % longSize_;
    }
    filled_ = std::min(filled_ + written, longSize_);
}

void SpectrumAnalyzer::fillFromHistory(
    float* destination, std::int64_t count, const std::vector<float>& window) const noexcept
{
    std::int64_t start = writeIndex_ - count;
    if (start < 0) start += longSize_;
    const std::int64_t firstRun = std::min(count, longSize_ - start);
    const float* history = history_.data();
    const float* weights = window.data();
    for (std::int64_t i = 0; i < firstRun; ++i)
        destination[i] = history[start + i] * weights[i];
    for (std::int64_t i = firstRun; i < count; ++i)
        destination[i] = history[i - firstRun] * weights[i];
}

void SpectrumAnalyzer::transformShort() noexcept
{
    fillFromHistory(shortInput_, size_, window_);
    fftwf_execute(static_cast<fftwf_plan>(shortPlan_));
    powerSpectrum(shortOutput_, power_, windowPower_, size_, correctionGains_);
}

void SpectrumAnalyzer::transformLong() noexcept
{
    fillFromHistory(longInput_, longSize_, longWindow_);
    fftwf_execute(static_cast<fftwf_plan>(longPlan_));
    powerSpectrum(longOutput_, longPower_, longWindowPower_, longSize_, longCorrectionGains_);
}

std::optional<Spectrum> SpectrumAnalyzer::analyze(double offset) noexcept
{
    if (filled_ < size_ || shortPlan_ == nullptr) return std::nullopt;
    transformShort();

    Spectrum spectrum;
    const double nyquist = sampleRate_ / 2.0;
    for (std::size_t i = 0; i < bands_.size(); ++i) {
        if (Spectrum::exactCenter(static_cast<int>(i)) >= nyquist) {
            spectrum.bandLevels[i] = SPLMath::floorDecibels;
            continue;
        }
        const Band& band = bands_[i];
        double sum = 0.0;
        if (band.first < band.end) {
            for (auto k = band.first; k < band.end; ++k)
                sum += power_[static_cast<std::size_t>(k)];
        } else {
            sum = band.fallbackScale * power_[static_cast<std::size_t>(band.fallbackBin)];
        }
        spectrum.bandLevels[i] = offset + SPLMath::decibels(sum);
    }

    // The strongest bin between 20 Hz and 20 kHz (or 95 % of Nyquist).
    const double binWidth = sampleRate_ / static_cast<double>(size_);
    const std::int64_t half = size_ / 2;
    const std::int64_t lowest
        = std::max(static_cast<std::int64_t>(std::ceil(20.0 / binWidth)), std::int64_t {2});
    const std::int64_t highest = std::min(
        half - 2, static_cast<std::int64_t>(std::min(0.95 * nyquist, 20000.0) / binWidth));
    std::int64_t best = lowest;
    double bestPower = -1.0;
    for (std::int64_t k = lowest; k <= highest; ++k) {
        if (power_[static_cast<std::size_t>(k)] > bestPower) {
            bestPower = power_[static_cast<std::size_t>(k)];
            best = k;
        }
    }

    if (bestPower > silentBin) {
        const auto at = [this](std::int64_t k) { return power_[static_cast<std::size_t>(k)]; };
        // Parabola through the log powers of the best bin and its neighbours.
        const double a = std::log(std::max(at(best - 1), 1e-30));
        const double b = std::log(bestPower);
        const double c = std::log(std::max(at(best + 1), 1e-30));
        const double d = a - 2.0 * b + c;
        const double offsetBins = d == 0.0 ? 0.0 : std::clamp(0.5 * (a - c) / d, -0.5, 0.5);
        const double frequency = binWidth * (static_cast<double>(best) + offsetBins);
        spectrum.dominantFrequency = frequency;

        // A whole tone either side, without the peak's own lobe.
        const std::int64_t lowerBin = std::max(
            static_cast<std::int64_t>(static_cast<double>(best) / wholeTone), std::int64_t {1});
        const std::int64_t upperBin = std::min(
            static_cast<std::int64_t>(static_cast<double>(best) * wholeTone + 1.0), half - 1);
        double surround = 0.0;
        std::int64_t counted = 0;
        for (std::int64_t k = lowerBin; k <= upperBin; ++k) {
            if (std::abs(k - best) < excludedAroundPeak) continue;
            surround += at(k);
            ++counted;
        }
        if (counted > 0) {
            double harmonic = 0.0;
            for (std::int64_t multiple : {2, 3}) {
                const std::int64_t centre = multiple * best;
                if (centre + 2 >= half) continue;
                for (std::int64_t k = centre - 2; k <= centre + 2; ++k)
                    harmonic = std::max(harmonic, at(k));
            }
            const double bestLevel = SPLMath::decibels(bestPower);
            spectrum.peak = SpectralPeak {frequency, offset + bestLevel,
                bestLevel - SPLMath::decibels(surround / static_cast<double>(counted)),
                SPLMath::decibels(harmonic) - bestLevel};
        }
    }

    lastUsedLongWindow_ = filled_ == longSize_ && longPlan_ != nullptr;
    if (lastUsedLongWindow_) transformLong();
    const auto& fine = SpectrumBand::fine();
    const auto& chosen = lastUsedLongWindow_ ? fineBands_ : fineBandsShortOnly_;
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        if (fine[i].lower >= nyquist) {
            spectrum.fineBandLevels[i] = SPLMath::floorDecibels;
            continue;
        }
        const auto& band = chosen[i];
        spectrum.fineBandLevels[i] = offset
            + SPLMath::decibels(weightedSum(band, band.usesLongWindow ? longPower_ : power_));
    }
    return spectrum;
}

} // namespace ostrel
