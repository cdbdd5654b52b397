#pragma once

// The read cursor over one OSC packet from QLab while it is decoded. Every read either succeeds
// and moves on, or fails and leaves the cursor where it was.
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ostrel {

struct OSCReader {
    std::span<const std::uint8_t> bytes;
    // Always counted from the start of the packet; a string's padding may carry it past the end.
    std::int64_t index = 0;

    explicit OSCReader(std::span<const std::uint8_t> packet) : bytes(packet) { }

    bool isAtEnd() const noexcept { return index >= byteCount(); }

    // Up to the next NUL, repaired as UTF-8; the cursor lands on the next multiple of 4.
    std::optional<std::string> readString();
    std::optional<std::uint32_t> read32();
    std::optional<std::uint64_t> read64();
    // A 4-byte unsigned length, then that many bytes; padding is skipped without being checked.
    std::optional<std::vector<std::uint8_t>> readBlob();

private:
    std::int64_t byteCount() const noexcept { return static_cast<std::int64_t>(bytes.size()); }
    std::int64_t remaining() const noexcept { return byteCount() - index; }
};

} // namespace ostrel
