#pragma once

// The frequency grids on which spectra are measured, stored and drawn: 31 base-ten third-octave
// bands, and 240 bands on an exact 1/24-octave grid of which the 1/6 and 1/12 octave displays
// are groups. The grids do not depend on the sample rate.
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace ostrel {

struct SpectrumBand {
    double lower = 0.0;
    double center = 0.0;
    double upper = 0.0;

    static constexpr std::size_t fineCount = 240;
    static constexpr std::size_t thirdOctaveCount = 31;
    // 10^(1/20): a third-octave band's half width as a factor.
    static constexpr double thirdOctaveHalfWidth = 1.1220184543019633;

    // 1000 x 2^(n/24) Hz.
    static double fineEdge(int n) noexcept;
    // Built once on first use and shared.
    static const std::vector<SpectrumBand>& fine();
    static const std::vector<SpectrumBand>& thirdOctave();
    static const std::vector<SpectrumBand>& sixthOctave();
    static const std::vector<SpectrumBand>& twelfthOctave();
    static std::vector<SpectrumBand> grouped(std::size_t size);
    // Sums the powers of each whole group of `size` levels; a trailing partial group is dropped.
    static std::vector<double> group(std::span<const double> levels, std::size_t size);
    static std::optional<std::size_t> index(double frequency, std::span<const SpectrumBand> bands);

    // The lower edge belongs to the band, the upper edge to the next.
    bool contains(double frequency) const noexcept
    {
        return lower <= frequency && frequency < upper;
    }

    bool operator==(const SpectrumBand&) const = default;
};

} // namespace ostrel
