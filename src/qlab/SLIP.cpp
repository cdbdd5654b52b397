#include "qlab/SLIP.h"

namespace ostrel::SLIP {

std::vector<std::uint8_t> encode(std::span<const std::uint8_t> payload)
{
    std::vector<std::uint8_t> frame;
    frame.reserve(payload.size() + 8);
    for (const std::uint8_t byte : payload) {
        if (byte == END) {
            frame.push_back(ESC);
            frame.push_back(ESC_END);
        } else if (byte == ESC) {
            frame.push_back(ESC);
            frame.push_back(ESC_ESC);
        } else {
            frame.push_back(byte);
        }
    }
    frame.push_back(END);
    return frame;
}

} // namespace ostrel::SLIP
