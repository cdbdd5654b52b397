// Feeds arbitrary bytes through everything a station does with what arrives on a crew
// connection: the frame reader, in pieces of many sizes, JSON decoding of each body, and the
// interval frames inside. Besides crashes, it stops when the reader holds more than the frame it
// is reading, or when a decoded message can't be framed and read back as the same kind.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "network/CrewFrameReader.h"
#include "network/CrewFraming.h"

using namespace ostrel;

namespace {

void require(bool condition)
{
    if (!condition) std::abort();
}

void exercise(QByteArrayView body)
{
    const auto result = CrewFraming::decode(body);
    const auto* message = std::get_if<CrewMessage>(&result);
    if (!message) return;
    if (const auto* interval = std::get_if<CrewMessages::Interval>(message))
        CrewFraming::decodeInterval(interval->frame);
    // Whatever was read must write and read again as the same kind of message, unless it holds
    // a number JSON cannot carry.
    const auto framed = CrewFraming::frame(*message);
    if (!framed) return;
    require(CrewFraming::length(QByteArrayView(*framed).first(4)).has_value());
    const auto again = CrewFraming::decode(QByteArrayView(*framed).sliced(4));
    const auto* reread = std::get_if<CrewMessage>(&again);
    require(reread && reread->index() == message->index());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArrayView stream(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    // The first byte picks the piece size, so headers and bodies are split at many places.
    const qsizetype chunk = size > 0 ? 1 + data[0] % 37 : 1;
    CrewFrameReader reader;
    QByteArrayView rest = stream;
    while (!rest.isEmpty() && !reader.isBroken()) {
        const qsizetype piece = std::min({chunk, reader.wanted(), rest.size()});
        const auto outcome = reader.append(rest.first(piece));
        require(reader.bufferedBytes() <= 4 + static_cast<qsizetype>(reader.announcedLength()));
        if (outcome == CrewFrameReader::Outcome::bodyComplete) exercise(reader.takeBody());
        rest = rest.sliced(piece);
    }

    // The whole input as one body.
    exercise(stream);
    return 0;
}
