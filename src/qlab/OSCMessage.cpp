#include "qlab/OSCMessage.h"

#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "common/FloatNarrowing.h"
#include "qlab/OSCReader.h"

namespace ostrel {

namespace {

using Bytes = std::vector<std::uint8_t>;

void appendBigEndian32(Bytes& packet, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        packet.push_back(static_cast<std::uint8_t>(value >> shift));
}

// Padding counts from the packet's start, so text that already ends on a boundary still gets a
// whole word of NULs.
void appendString(Bytes& packet, std::string_view text)
{
    packet.insert(packet.end(), text.begin(), text.end());
    packet.push_back(0);
    while (packet.size() % 4 != 0)
        packet.push_back(0);
}

void appendBody(Bytes& packet, const OSCArgument& argument)
{
    const auto& value = argument.value();
    if (const auto* integer = std::get_if<std::int32_t>(&value)) {
        appendBigEndian32(packet, static_cast<std::uint32_t>(*integer));
    } else if (const auto* real = std::get_if<float>(&value)) {
        appendBigEndian32(packet, std::bit_cast<std::uint32_t>(*real));
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        appendString(packet, *text);
    } else if (const auto* blob = std::get_if<OSCArgument::Blob>(&value)) {
        if (blob->size() > std::numeric_limits<std::uint32_t>::max())
            throw std::length_error("An OSC blob can hold at most 4 GiB.");
        appendBigEndian32(packet, static_cast<std::uint32_t>(blob->size()));
        packet.insert(packet.end(), blob->begin(), blob->end());
        while (packet.size() % 4 != 0)
            packet.push_back(0);
    }
}

std::optional<OSCArgument> readArgument(OSCReader& reader, char tag)
{
    switch (tag) {
    case 'i':
        if (auto word = reader.read32())
            return OSCArgument::int32(static_cast<std::int32_t>(*word));
        return std::nullopt;
    case 'f':
        if (auto word = reader.read32()) return OSCArgument::float32(std::bit_cast<float>(*word));
        return std::nullopt;
    case 's':
    case 'S':
        if (auto text = reader.readString()) return OSCArgument::string(std::move(*text));
        return std::nullopt;
    case 'b':
        if (auto blob = reader.readBlob()) return OSCArgument::blob(std::move(*blob));
        return std::nullopt;
    case 'h':
    case 't':
        // QLab's 64-bit values fit in 32 bits; the low word is kept on purpose.
        if (auto word = reader.read64())
            return OSCArgument::int32(static_cast<std::int32_t>(static_cast<std::uint32_t>(*word)));
        return std::nullopt;
    case 'd':
        if (auto word = reader.read64())
            return OSCArgument::float32(narrowedToFloat(std::bit_cast<double>(*word)));
        return std::nullopt;
    case 'T':
        return OSCArgument::boolean(true);
    case 'F':
        return OSCArgument::boolean(false);
    case 'N':
    case 'I':
        return OSCArgument::null();
    default:
        return std::nullopt;
    }
}

} // namespace

std::vector<std::uint8_t> OSCMessage::encoded() const
{
    Bytes packet;
    packet.reserve(address.size() + arguments.size() * 8 + 16);
    appendString(packet, address);
    std::string tags = ",";
    for (const auto& argument : arguments)
        tags.push_back(argument.typeTag());
    appendString(packet, tags);
    for (const auto& argument : arguments)
        appendBody(packet, argument);
    return packet;
}

std::optional<OSCMessage> OSCMessage::decoding(std::span<const std::uint8_t> bytes)
{
    OSCReader reader(bytes);
    auto address = reader.readString();
    if (!address || !address->starts_with('/')) return std::nullopt;
    OSCMessage message(std::move(*address));
    // Some senders leave out the type tags of a message without arguments.
    if (reader.isAtEnd()) return message;

    const auto tags = reader.readString();
    if (!tags || tags->empty() || tags->front() != ',') return std::nullopt;
    for (std::size_t position = 1; position < tags->size(); ++position) {
        auto argument = readArgument(reader, (*tags)[position]);
        if (!argument) return std::nullopt;
        message.arguments.push_back(std::move(*argument));
    }
    return message;
}

} // namespace ostrel
