#include "qlab/QLabTimecodeSettings.h"

namespace ostrel {

std::optional<std::string_view> QLabTimecodeSettings::outputTitle() const noexcept
{
    if (outputType == 0) return "MTC";
    if (outputType == 1) return "LTC";
    return std::nullopt;
}

} // namespace ostrel
