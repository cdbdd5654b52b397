#pragma once

// Cuts QLab's TCP stream back into OSC packets. Chunks may split a frame, or an escape, anywhere;
// the state in between lives here, held by value in the client and reset on each connection.
#include <cstdint>
#include <span>
#include <vector>

namespace ostrel {

struct SLIPDecoder {
    static constexpr std::int64_t defaultMaximumPacketSize = 4'194'304;

    std::vector<std::uint8_t> buffer; // the unescaped frame being received
    bool isEscaping = false;
    std::int64_t maximumPacketSize = defaultMaximumPacketSize;

    // The packets this chunk completed, in stream order. Empty frames produce none. A frame still
    // open and longer than the limit after the chunk is dropped; the stream resynchronises at the
    // next END.
    std::vector<std::vector<std::uint8_t>> feed(std::span<const std::uint8_t> chunk);
    void reset();
};

} // namespace ostrel
