// Checks every band level against energy summed from a plain DFT of the same windowed samples,
// computed here in double precision without any of the analyser's code.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "measurement/SpectrumAnalyzer.h"
#include "measurement/SpectrumBand.h"
#include "support/Signals.h"

using namespace ostrel;

namespace {

// Paul Kellet's economy pink filter over deterministic white noise.
std::vector<float> pinkNoise(std::size_t count)
{
    const auto white = testsignals::noise(1.0, count, 99);
    std::vector<float> pink(count);
    double b0 = 0, b1 = 0, b2 = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double w = white[i];
        b0 = 0.99765 * b0 + w * 0.0990460;
        b1 = 0.96300 * b1 + w * 0.2965164;
        b2 = 0.57000 * b2 + w * 1.0526913;
        pink[i] = static_cast<float>(0.05 * (b0 + b1 + b2 + w * 0.1848));
    }
    return pink;
}

// One-sided power of bins [0, upTo) of the Hann-windowed last `length` samples, scaled so that a
// full-scale sine sums to 0.5.
std::vector<double> plainDftPower(
    const std::vector<float>& samples, std::size_t length, std::size_t upTo)
{
    std::vector<double> windowed(length), cosine(length), sine(length);
    const std::size_t start = samples.size() - length;
    double windowPower = 0.0;
    for (std::size_t n = 0; n < length; ++n) {
        const double angle
            = 2.0 * std::numbers::pi * static_cast<double>(n) / static_cast<double>(length);
        const double w = static_cast<float>(0.5 * (1.0 - std::cos(angle)));
        windowPower += w * w;
        windowed[n] = w * samples[start + n];
        cosine[n] = std::cos(angle);
        sine[n] = std::sin(angle);
    }
    std::vector<double> power(upTo, 0.0);
    for (std::size_t k = 1; k < upTo; ++k) {
        double re = 0.0, im = 0.0;
        std::size_t index = 0;
        for (std::size_t n = 0; n < length; ++n) {
            re += windowed[n] * cosine[index];
            im -= windowed[n] * sine[index];
            index += k;
            if (index >= length) index -= length;
        }
        power[k] = 2.0 / (windowPower * static_cast<double>(length)) * (re * re + im * im);
    }
    return power;
}

double levelOf(double energy)
{
    return 10.0 * std::log10(std::max(energy, 1e-20));
}

// Energy of a band as the overlap of each bin's [k - 0.5, k + 0.5) with the band's edges in bins.
double overlapEnergy(const std::vector<double>& power, double lo, double hi)
{
    double sum = 0.0;
    for (std::size_t k = 1; k < power.size(); ++k) {
        const double left = std::max(lo, static_cast<double>(k) - 0.5);
        const double right = std::min(hi, static_cast<double>(k) + 0.5);
        if (right > left) sum += (right - left) * power[k];
    }
    return sum;
}

void checkAgainstPlainDft(const std::vector<float>& signal, const char* name)
{
    const double rate = 48000.0;
    const std::size_t size = 16384, longSize = 65536;
    SpectrumAnalyzer analyzer(rate);
    analyzer.append(signal);
    const auto spectrum = analyzer.analyze(0.0);
    ASSERT_TRUE(spectrum);
    ASSERT_TRUE(analyzer.lastUsedLongWindow());

    const auto shortPower = plainDftPower(signal, size, size / 2);
    // The long window serves fine bands below 400 Hz only: ~600 bins of it are enough.
    const double longBinWidth = rate / static_cast<double>(longSize);
    const auto longBins = static_cast<std::size_t>(450.0 / longBinWidth) + 2;
    const auto longPower = plainDftPower(signal, longSize, longBins);
    const double binWidth = rate / static_cast<double>(size);

    const auto& thirds = SpectrumBand::thirdOctave();
    for (std::size_t i = 0; i < thirds.size(); ++i) {
        // Bins whose centre frequency lies inside the band.
        double energy = 0.0;
        for (std::size_t k = 1; k < shortPower.size(); ++k) {
            if (thirds[i].contains(static_cast<double>(k) * binWidth)) energy += shortPower[k];
        }
        EXPECT_NEAR(spectrum->bandLevels[i], levelOf(energy), 0.01) << name << " third " << i;
    }
    const auto& fine = SpectrumBand::fine();
    for (std::size_t i = 0; i < fine.size(); ++i) {
        const bool usesLong = fine[i].center < 400.0;
        const double width = usesLong ? longBinWidth : binWidth;
        const double energy = overlapEnergy(
            usesLong ? longPower : shortPower, fine[i].lower / width, fine[i].upper / width);
        EXPECT_NEAR(spectrum->fineBandLevels[i], levelOf(energy), 0.01) << name << " fine " << i;
    }
}

} // namespace

TEST(SpectrumAnalyzerReference, WhiteNoiseBandsEqualPlainDftEnergy)
{
    checkAgainstPlainDft(testsignals::noise(0.5, 70000, 5), "white");
}

TEST(SpectrumAnalyzerReference, PinkNoiseBandsEqualPlainDftEnergy)
{
    checkAgainstPlainDft(pinkNoise(70000), "pink");
}
