#include "qlab/Utf8Repair.h"

#include <cstddef>

namespace ostrel::Utf8Repair {

namespace {

constexpr char replacement[] = "\xEF\xBF\xBD";

struct Lead {
    std::size_t continuationCount; // 0 for a byte that cannot start a sequence
    std::uint8_t secondLow; // the second byte's range narrows for some leads
    std::uint8_t secondHigh;
};

Lead lead(std::uint8_t byte)
{
    if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
    if (byte == 0xE0) return {2, 0xA0, 0xBF}; // no overlong forms
    if (byte == 0xED) return {2, 0x80, 0x9F}; // no surrogates
    if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
    if (byte == 0xF0) return {3, 0x90, 0xBF};
    if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
    if (byte == 0xF4) return {3, 0x80, 0x8F}; // nothing past U+10FFFF
    return {0, 0, 0};
}

} // namespace

std::string repaired(std::span<const std::uint8_t> bytes)
{
    std::string text;
    text.reserve(bytes.size());
    std::size_t index = 0;
    while (index < bytes.size()) {
        const std::uint8_t first = bytes[index];
        if (first < 0x80) {
            text.push_back(static_cast<char>(first));
            ++index;
            continue;
        }
        const Lead expected = lead(first);
        std::size_t valid = 1; // bytes of this sequence that fit so far
        while (valid <= expected.continuationCount && index + valid < bytes.size()) {
            const std::uint8_t next = bytes[index + valid];
            const std::uint8_t low = valid == 1 ? expected.secondLow : 0x80;
            const std::uint8_t high = valid == 1 ? expected.secondHigh : 0xBF;
            if (next < low || next > high) break;
            ++valid;
        }
        if (expected.continuationCount > 0 && valid == expected.continuationCount + 1) {
            for (std::size_t offset = 0; offset < valid; ++offset)
                text.push_back(static_cast<char>(bytes[index + offset]));
        } else {
            text.append(replacement);
        }
        index += valid;
    }
    return text;
}

} // namespace ostrel::Utf8Repair
