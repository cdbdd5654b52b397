#pragma once

// How the spectrum pane draws: bars, a line or the spectrogram.
#include <array>
#include <optional>
#include <string_view>

namespace ostrel {

enum class SpectrumStyle { bars, line, spectrogram };

namespace SpectrumStyles {
inline constexpr std::array<SpectrumStyle, 3> all {
    SpectrumStyle::bars, SpectrumStyle::line, SpectrumStyle::spectrogram};
std::string_view rawValue(SpectrumStyle style) noexcept;
std::optional<SpectrumStyle> fromRawValue(std::string_view raw) noexcept;
std::string_view title(SpectrumStyle style) noexcept;
// The symbol name; the QML layer maps it to an icon.
std::string_view systemImage(SpectrumStyle style) noexcept;
} // namespace SpectrumStyles

} // namespace ostrel
