#include "qlab/OSCArgument.h"

#include <array>
#include <charconv>

namespace ostrel {

char OSCArgument::typeTag() const noexcept
{
    switch (kind()) {
    case Kind::int32:
        return 'i';
    case Kind::float32:
        return 'f';
    case Kind::string:
        return 's';
    case Kind::blob:
        return 'b';
    case Kind::boolean:
        return std::get<bool>(value_) ? 'T' : 'F';
    case Kind::null:
        return 'N';
    }
    return 'N';
}

std::optional<std::string> OSCArgument::stringValue() const
{
    if (const auto* integer = std::get_if<std::int32_t>(&value_)) return std::to_string(*integer);
    if (const auto* real = std::get_if<float>(&value_)) {
        std::array<char, 32> text {};
        const auto result = std::to_chars(text.data(), text.data() + text.size(), *real);
        return std::string(text.data(), result.ptr);
    }
    if (const auto* text = std::get_if<std::string>(&value_)) return *text;
    return std::nullopt;
}

} // namespace ostrel
