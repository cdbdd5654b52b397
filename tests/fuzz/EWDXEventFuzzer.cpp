// Feeds an arbitrary event stream, line by line as the link reads it, through the event reader
// and hands every event's data to the channel parser.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <QByteArray>
#include <QList>

#include "mics/EWDXProtocol.h"

using namespace ostrel;

namespace {

void require(bool condition)
{
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    EWDXProtocol::EventReader reader;
    EWDXProtocol::ChannelStates states;
    QStringList lines;
    for (QByteArray line : bytes.split('\n')) {
        if (line.endsWith('\r')) line.chop(1);
        lines.append(QString::fromUtf8(line));
        const auto event = reader.read(lines.back());
        if (!event) continue;
        // A data line resets the name, so a lone data line is always a message.
        require(!lines.back().startsWith(QStringLiteral("event:")));
        if (event->name != u"open" && event->name != u"close")
            EWDXProtocol::apply(event->data.toUtf8(), states);
        else
            EWDXProtocol::sessionUUID(event->data.toUtf8());
    }
    EWDXProtocol::parseEvent(lines);
    return 0;
}
