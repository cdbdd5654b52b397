#include "qlab/OSCReader.h"

#include <algorithm>

#include "qlab/Utf8Repair.h"

namespace ostrel {

std::optional<std::string> OSCReader::readString()
{
    if (isAtEnd() || index < 0) return std::nullopt;
    const auto start = bytes.begin() + index;
    const auto nul = std::find(start, bytes.end(), std::uint8_t {0});
    if (nul == bytes.end()) return std::nullopt;
    const auto length = static_cast<std::int64_t>(nul - start);
    std::string text = Utf8Repair::repaired({start, nul});
    index = (index + length + 4) & ~std::int64_t {3};
    return text;
}

std::optional<std::uint32_t> OSCReader::read32()
{
    if (index < 0 || remaining() < 4) return std::nullopt;
    std::uint32_t value = 0;
    for (int offset = 0; offset < 4; ++offset)
        value = (value << 8) | bytes[static_cast<std::size_t>(index + offset)];
    index += 4;
    return value;
}

std::optional<std::uint64_t> OSCReader::read64()
{
    if (index < 0 || remaining() < 8) return std::nullopt;
    std::uint64_t value = 0;
    for (int offset = 0; offset < 8; ++offset)
        value = (value << 8) | bytes[static_cast<std::size_t>(index + offset)];
    index += 8;
    return value;
}

std::optional<std::vector<std::uint8_t>> OSCReader::readBlob()
{
    const std::int64_t start = index;
    const auto length = read32();
    if (!length) return std::nullopt;
    const auto size = static_cast<std::int64_t>(*length);
    if (index + size > byteCount()) {
        index = start;
        return std::nullopt;
    }
    const auto first = bytes.begin() + index;
    std::vector<std::uint8_t> blob(first, first + size);
    index += (size + 3) & ~std::int64_t {3};
    return blob;
}

} // namespace ostrel
