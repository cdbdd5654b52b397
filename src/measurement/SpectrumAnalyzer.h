#pragma once

// Keeps a ring of the latest raw samples and, once per interval, turns it into a Spectrum. A short
// Hann window (about 0.34 s) serves everything above 400 Hz and the peak finder; a window four
// times longer gives the fine bands their resolution in the bass. Unweighted: only calibration
// and microphone correction enter the spectrum. Every buffer and both FFTW plans are made at
// construction; `append` and `analyze` never allocate.
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "measurement/MicrophoneCorrection.h"
#include "measurement/Spectrum.h"

namespace ostrel {

class SpectrumAnalyzer {
public:
    struct Band {
        std::int64_t first = 0; // bins [first, end)
        std::int64_t end = 0;
        std::int64_t fallbackBin = 1;
        double fallbackScale = 0.0;
    };

    struct WeightedBand {
        bool usesLongWindow = false;
        std::int64_t firstBin = 1;
        std::int64_t lastBin = 1;
        double firstWeight = 0.0;
        double lastWeight = 0.0;
    };

    // Fine bands below this centre use the long window once it is full.
    static constexpr double longWindowBelow = 400.0;

    // 2^round(log2(rate x 0.34)), exponent clamped to 12...16.
    static std::int64_t windowSize(double sampleRate) noexcept;
    // The weighted-band rule for band edges on a window of `length` samples.
    static WeightedBand weightedBand(double lower, double upper, double sampleRate,
        std::int64_t length, bool usesLongWindow) noexcept;

    explicit SpectrumAnalyzer(double sampleRate);
    ~SpectrumAnalyzer();
    SpectrumAnalyzer(SpectrumAnalyzer&& other) noexcept;
    SpectrumAnalyzer& operator=(SpectrumAnalyzer&& other) noexcept;
    SpectrumAnalyzer(const SpectrumAnalyzer&) = delete;
    SpectrumAnalyzer& operator=(const SpectrumAnalyzer&) = delete;

    void setCorrection(const std::optional<MicrophoneCorrection>& correction);
    void append(std::span<const float> samples) noexcept;
    std::optional<Spectrum> analyze(double calibrationOffset) noexcept;

    double sampleRate() const noexcept { return sampleRate_; }
    std::int64_t size() const noexcept { return size_; }
    std::int64_t longSize() const noexcept { return longSize_; }
    std::int64_t filled() const noexcept { return filled_; }
    bool hasTransforms() const noexcept { return shortPlan_ != nullptr && longPlan_ != nullptr; }
    bool hasCorrection() const noexcept { return !correctionGains_.empty(); }
    const std::vector<Band>& bands() const noexcept { return bands_; }
    const std::vector<WeightedBand>& fineBands() const noexcept { return fineBands_; }
    const std::vector<WeightedBand>& fineBandsShortOnly() const noexcept
    {
        return fineBandsShortOnly_;
    }
    const std::vector<float>& window() const noexcept { return window_; }
    // Whether the last `analyze` measured the fine bands on the long window.
    bool lastUsedLongWindow() const noexcept { return lastUsedLongWindow_; }

private:
    void release() noexcept;
    void transformShort() noexcept;
    void transformLong() noexcept;
    void fillFromHistory(
        float* destination, std::int64_t count, const std::vector<float>& window) const noexcept;

    double sampleRate_ = 48000.0;
    std::int64_t size_ = 0;
    std::int64_t longSize_ = 0;
    void* shortPlan_ = nullptr; // fftwf_plan, kept opaque so FFTW stays out of this header
    void* longPlan_ = nullptr;
    float* shortInput_ = nullptr;
    float* longInput_ = nullptr;
    float* shortOutput_ = nullptr; // interleaved complex, size/2 + 1 bins
    float* longOutput_ = nullptr;
    std::vector<float> window_;
    std::vector<float> longWindow_;
    double windowPower_ = 0.0;
    double longWindowPower_ = 0.0;
    std::vector<float> history_;
    std::int64_t writeIndex_ = 0;
    std::int64_t filled_ = 0;
    std::vector<double> power_;
    std::vector<double> longPower_;
    std::vector<Band> bands_;
    std::vector<WeightedBand> fineBands_;
    std::vector<WeightedBand> fineBandsShortOnly_;
    std::vector<double> correctionGains_;
    std::vector<double> longCorrectionGains_;
    bool lastUsedLongWindow_ = false;
};

} // namespace ostrel
