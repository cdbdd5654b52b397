#pragma once

// One OSC 1.0 message as it travels to and from QLab: an address and its arguments. Bundles are
// never used by QLab's replies, so a packet that is not a message is simply not read.
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "qlab/OSCArgument.h"

namespace ostrel {

struct OSCMessage {
    std::string address;
    std::vector<OSCArgument> arguments;

    explicit OSCMessage(std::string messageAddress, std::vector<OSCArgument> messageArguments = {})
        : address(std::move(messageAddress)), arguments(std::move(messageArguments))
    {
    }

    // Throws std::length_error for a blob longer than 2^32 - 1 bytes, which the program never
    // builds.
    std::vector<std::uint8_t> encoded() const;
    // Nothing for a packet that is not a readable message.
    static std::optional<OSCMessage> decoding(std::span<const std::uint8_t> bytes);

    bool operator==(const OSCMessage&) const = default;
};

} // namespace ostrel
