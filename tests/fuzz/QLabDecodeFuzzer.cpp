// Feeds arbitrary bytes through everything the station does with what arrives from QLab: SLIP
// framing, OSC decoding and the QLab parsers, with the data of replies read as cue values too.
// Besides crashes, it stops on a broken round trip, which would mean a packet changes its meaning
// when the station writes it back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "qlab/OSCMessage.h"
#include "qlab/QLabProtocol.h"
#include "qlab/SLIP.h"
#include "qlab/SLIPDecoder.h"

using namespace ostrel;

namespace {

const Date now = addingSeconds(Date {}, 1'700'000'000.0);

void require(bool condition)
{
    if (!condition) std::abort();
}

void exerciseReply(const QLabReply& reply, const OSCMessage& message)
{
    QLabProtocol::parseWorkspaces(reply.data);
    auto cues = QLabProtocol::parseCues(reply.data, now);
    QLabCue cue;
    cue.id = "F";
    cue.type = "Timecode";
    QLabProtocol::apply(reply.data, cue, now);
    QLabProtocol::apply(QString::fromStdString(message.address), reply.data, cue, now);
    cue.elapsed(now);
    cue.remaining(now);
    cue.displayName();
    cue.reportedTimecodeRate();
    // Made-up parents turn the list into a family for the group walk.
    QHash<QString, QLabCue> known;
    for (std::size_t index = 0; index < cues.size(); ++index) {
        cues[index].parentID = cues[(index * 7 + 3) % cues.size()].id;
        QLabCue parent = cues[index];
        parent.type = index % 2 == 0 ? "Group" : "Cue List";
        known.insert(parent.id, parent);
    }
    cues.push_back(cue);
    QLabProtocol::collapseGroups(cues, known);
    const auto json = cue.toJson();
    require(QLabCue::fromJson(json).has_value());
}

void exerciseMessage(const OSCMessage& message)
{
    // A decoded message written and read again must write the same bytes: NaNs compare unequal,
    // bytes do not.
    const auto written = message.encoded();
    const auto reread = OSCMessage::decoding(written);
    require(reread.has_value());
    require(reread->encoded() == written);

    const auto parsed = QLabProtocol::parse(message, now);
    QLabProtocol::cueID(QString::fromStdString(message.address));
    if (const auto reply = QLabProtocol::parseReply(message)) exerciseReply(*reply, message);
    (void)parsed;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::uint8_t> bytes(data, size);

    // The first byte picks chunk sizes, so frames and escapes are split at many places.
    SLIPDecoder decoder;
    decoder.maximumPacketSize = 1 << 16;
    const std::size_t chunk = size > 0 ? 1 + data[0] % 61 : 1;
    for (std::size_t offset = 0; offset < size; offset += chunk) {
        for (const auto& packet :
            decoder.feed(bytes.subspan(offset, std::min(chunk, size - offset)))) {
            if (auto message = OSCMessage::decoding(packet)) exerciseMessage(*message);
        }
    }

    // The whole input as one packet, and as a payload that must survive SLIP unchanged.
    if (auto message = OSCMessage::decoding(bytes)) exerciseMessage(*message);
    if (size > 0) {
        SLIPDecoder fresh;
        const auto packets = fresh.feed(SLIP::encode(bytes));
        require(packets.size() == 1 && packets[0].size() == size
            && std::equal(packets[0].begin(), packets[0].end(), bytes.begin()));
    }
    return 0;
}
