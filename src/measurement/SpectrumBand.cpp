#include "measurement/SpectrumBand.h"

#include <cmath>

#include "measurement/SPLMath.h"

namespace ostrel {

double SpectrumBand::fineEdge(int n) noexcept
{
    return 1000.0 * std::pow(2.0, n / 24.0);
}

const std::vector<SpectrumBand>& SpectrumBand::fine()
{
    static const std::vector<SpectrumBand> bands = [] {
        std::vector<SpectrumBand> list;
        list.reserve(fineCount);
        for (int n = -136; n <= 103; ++n) {
            list.push_back(
                {fineEdge(n), 1000.0 * std::pow(2.0, (n + 0.5) / 24.0), fineEdge(n + 1)});
        }
        return list;
    }();
    return bands;
}

const std::vector<SpectrumBand>& SpectrumBand::thirdOctave()
{
    static const std::vector<SpectrumBand> bands = [] {
        std::vector<SpectrumBand> list;
        list.reserve(thirdOctaveCount);
        for (int n = -17; n <= 13; ++n) {
            const double middle = 1000.0 * std::pow(10.0, n / 10.0);
            list.push_back({middle / thirdOctaveHalfWidth, middle, middle * thirdOctaveHalfWidth});
        }
        return list;
    }();
    return bands;
}

const std::vector<SpectrumBand>& SpectrumBand::sixthOctave()
{
    static const std::vector<SpectrumBand> bands = grouped(4);
    return bands;
}

const std::vector<SpectrumBand>& SpectrumBand::twelfthOctave()
{
    static const std::vector<SpectrumBand> bands = grouped(2);
    return bands;
}

std::vector<SpectrumBand> SpectrumBand::grouped(std::size_t size)
{
    const auto& bands = fine();
    if (size < 1) size = 1;
    std::vector<SpectrumBand> list;
    for (std::size_t start = 0; start + size <= bands.size(); start += size) {
        const double lower = bands[start].lower;
        const double upper = bands[start + size - 1].upper;
        list.push_back({lower, std::sqrt(lower * upper), upper});
    }
    return list;
}

std::vector<double> SpectrumBand::group(std::span<const double> levels, std::size_t size)
{
    if (size < 2) return {levels.begin(), levels.end()};
    std::vector<double> grouped;
    grouped.reserve(levels.size() / size);
    for (std::size_t start = 0; start + size <= levels.size(); start += size) {
        double sum = 0.0;
        for (std::size_t i = start; i < start + size; ++i)
            sum += SPLMath::power(levels[i]);
        grouped.push_back(SPLMath::decibels(sum));
    }
    return grouped;
}

std::optional<std::size_t> SpectrumBand::index(
    double frequency, std::span<const SpectrumBand> bands)
{
    for (std::size_t i = 0; i < bands.size(); ++i) {
        if (bands[i].contains(frequency)) return i;
    }
    return std::nullopt;
}

} // namespace ostrel
