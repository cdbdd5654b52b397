#pragma once

// Enumerations with raw values state each case's value once, in `rawValue`; reading a value
// back is the same search for all of them.
#include <optional>

namespace ostrel::RawValues {

// The case among `all` whose raw value is `raw`.
template <typename Cases, typename Raw, typename RawOf>
constexpr std::optional<typename Cases::value_type> find(
    const Cases& all, const Raw& raw, RawOf rawOf) noexcept
{
    for (const auto value : all) {
        if (rawOf(value) == raw) return value;
    }
    return std::nullopt;
}

} // namespace ostrel::RawValues
