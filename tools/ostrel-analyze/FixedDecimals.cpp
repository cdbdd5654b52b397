#include "ostrel-analyze/FixedDecimals.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ostrel::analyze {

std::string formatFixed(double value, int decimals)
{
    // A value that rounds to zero prints as zero, not with a sign that only confuses a diff.
    const double scale = std::pow(10.0, decimals);
    if (std::round(std::abs(value) * scale) == 0.0) value = 0.0;
    // Room for the longest fixed double, about 310 digits.
    std::array<char, 512> buffer {};
    const auto [end, error] = std::to_chars(
        buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
    if (error != std::errc()) return "nan";
    return std::string(buffer.data(), end);
}

} // namespace ostrel::analyze
