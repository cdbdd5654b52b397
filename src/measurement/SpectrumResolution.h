#pragma once

// How finely the spectrum is shown. Settings store the raw value.
#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "measurement/SpectrumBand.h"

namespace ostrel {

enum class SpectrumResolution { third = 3, sixth = 6, twelfth = 12, twentyFourth = 24 };

namespace SpectrumResolutions {

inline constexpr std::array<SpectrumResolution, 4> all {SpectrumResolution::third,
    SpectrumResolution::sixth, SpectrumResolution::twelfth, SpectrumResolution::twentyFourth};

int rawValue(SpectrumResolution resolution) noexcept;
// Any other raw value is no resolution.
std::optional<SpectrumResolution> fromRawValue(int raw) noexcept;
std::string title(SpectrumResolution resolution);
std::string shortTitle(SpectrumResolution resolution);
// Fine bands per shown band; absent for thirds, which have a grid of their own.
std::optional<std::size_t> fineBandsPerBand(SpectrumResolution resolution) noexcept;
const std::vector<SpectrumBand>& bands(SpectrumResolution resolution);
std::vector<double> levels(
    SpectrumResolution resolution, std::span<const double> third, std::span<const double> fine);

} // namespace SpectrumResolutions
} // namespace ostrel
