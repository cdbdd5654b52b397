#pragma once

// Byte strings for the QLab link's tests, written as hex or as text so that expected packets
// read like the wire.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::test {

using Bytes = std::vector<std::uint8_t>;

// Spaces are for reading only; anything but hex digits and spaces is a mistake in the test.
inline Bytes hex(std::string_view text)
{
    Bytes bytes;
    int high = -1;
    for (const char character : text) {
        if (character == ' ') continue;
        int digit = -1;
        if (character >= '0' && character <= '9') digit = character - '0';
        if (character >= 'a' && character <= 'f') digit = character - 'a' + 10;
        if (character >= 'A' && character <= 'F') digit = character - 'A' + 10;
        if (digit < 0) throw std::invalid_argument("not a hex digit in a test vector");
        if (high < 0) {
            high = digit;
        } else {
            bytes.push_back(static_cast<std::uint8_t>(high * 16 + digit));
            high = -1;
        }
    }
    if (high >= 0) throw std::invalid_argument("odd number of hex digits in a test vector");
    return bytes;
}

inline Bytes ascii(std::string_view text)
{
    return Bytes(text.begin(), text.end());
}

inline Bytes joined(std::initializer_list<Bytes> parts)
{
    Bytes bytes;
    for (const auto& part : parts)
        bytes.insert(bytes.end(), part.begin(), part.end());
    return bytes;
}

} // namespace ostrel::test
