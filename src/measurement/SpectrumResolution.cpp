#include "measurement/SpectrumResolution.h"

#include "common/RawValues.h"

namespace ostrel::SpectrumResolutions {

int rawValue(SpectrumResolution resolution) noexcept
{
    return static_cast<int>(resolution);
}

std::optional<SpectrumResolution> fromRawValue(int raw) noexcept
{
    return RawValues::find(all, raw, [](auto value) { return rawValue(value); });
}

std::string title(SpectrumResolution resolution)
{
    return "1/" + std::to_string(rawValue(resolution)) + " Octave";
}

std::string shortTitle(SpectrumResolution resolution)
{
    return "1/" + std::to_string(rawValue(resolution)) + " Oct";
}

std::optional<std::size_t> fineBandsPerBand(SpectrumResolution resolution) noexcept
{
    switch (resolution) {
    case SpectrumResolution::third:
        return std::nullopt;
    case SpectrumResolution::sixth:
        return 4;
    case SpectrumResolution::twelfth:
        return 2;
    case SpectrumResolution::twentyFourth:
        return 1;
    }
    return std::nullopt;
}

const std::vector<SpectrumBand>& bands(SpectrumResolution resolution)
{
    switch (resolution) {
    case SpectrumResolution::third:
        return SpectrumBand::thirdOctave();
    case SpectrumResolution::sixth:
        return SpectrumBand::sixthOctave();
    case SpectrumResolution::twelfth:
        return SpectrumBand::twelfthOctave();
    case SpectrumResolution::twentyFourth:
        return SpectrumBand::fine();
    }
    return SpectrumBand::fine();
}

std::vector<double> levels(
    SpectrumResolution resolution, std::span<const double> third, std::span<const double> fine)
{
    const auto perBand = fineBandsPerBand(resolution);
    if (!perBand) return {third.begin(), third.end()};
    return SpectrumBand::group(fine, *perBand);
}

} // namespace ostrel::SpectrumResolutions
