#include "qlab/SLIPDecoder.h"

#include "qlab/SLIP.h"

namespace ostrel {

std::vector<std::vector<std::uint8_t>> SLIPDecoder::feed(std::span<const std::uint8_t> chunk)
{
    std::vector<std::vector<std::uint8_t>> packets;
    for (const std::uint8_t byte : chunk) {
        if (isEscaping) {
            isEscaping = false;
            // A stray ESC is swallowed and the byte kept, rather than losing the frame.
            if (byte == SLIP::ESC_END)
                buffer.push_back(SLIP::END);
            else if (byte == SLIP::ESC_ESC)
                buffer.push_back(SLIP::ESC);
            else
                buffer.push_back(byte);
        } else if (byte == SLIP::ESC) {
            isEscaping = true;
        } else if (byte == SLIP::END) {
            if (!buffer.empty()) {
                packets.push_back(buffer);
                buffer.clear(); // keeps the capacity for the next frame
            }
        } else {
            buffer.push_back(byte);
        }
    }
    // Tested once per chunk, so only the frame in progress is ever dropped.
    if (static_cast<std::int64_t>(buffer.size()) > maximumPacketSize) {
        buffer = {};
        isEscaping = false;
    }
    return packets;
}

void SLIPDecoder::reset()
{
    buffer.clear();
    isEscaping = false;
}

} // namespace ostrel
