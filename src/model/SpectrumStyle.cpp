#include "model/SpectrumStyle.h"

#include "common/RawValues.h"

namespace ostrel::SpectrumStyles {

std::string_view rawValue(SpectrumStyle style) noexcept
{
    switch (style) {
    case SpectrumStyle::bars:
        return "bars";
    case SpectrumStyle::line:
        return "line";
    case SpectrumStyle::spectrogram:
        return "spectrogram";
    }
    return "bars";
}

std::optional<SpectrumStyle> fromRawValue(std::string_view raw) noexcept
{
    return RawValues::find(all, raw, [](auto value) { return rawValue(value); });
}

std::string_view title(SpectrumStyle style) noexcept
{
    switch (style) {
    case SpectrumStyle::bars:
        return "Bars";
    case SpectrumStyle::line:
        return "Line";
    case SpectrumStyle::spectrogram:
        return "Spectrogram";
    }
    return "Bars";
}

std::string_view systemImage(SpectrumStyle style) noexcept
{
    switch (style) {
    case SpectrumStyle::bars:
        return "chart.bar.fill";
    case SpectrumStyle::line:
        return "waveform.path.ecg";
    case SpectrumStyle::spectrogram:
        return "square.grid.3x3.fill";
    }
    return "chart.bar.fill";
}

} // namespace ostrel::SpectrumStyles
