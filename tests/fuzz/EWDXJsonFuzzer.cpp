// Feeds arbitrary bytes to every reader of EW-DX JSON: event data, the identity and site records
// and the "open" event, and checks that only channels said to be written changed.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <QByteArray>

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
    EWDXProtocol::ChannelStates states;
    states[0].name = QStringLiteral("Lead");
    const EWDXProtocol::ChannelStates before = states;
    const auto written = EWDXProtocol::apply(bytes, states);
    for (const auto& [index, state] : states) {
        if (!written.contains(index)) require(before.count(index) && before.at(index) == state);
        if (state.hasSignal()) require(state.hasReported);
    }
    const int count = EWDXProtocol::channelCount(EWDXProtocol::product(bytes).value_or(QString()));
    require(count == 2 || count == 4);
    if (auto name = EWDXProtocol::deviceName(bytes)) require(!name->isEmpty());
    EWDXProtocol::sessionUUID(bytes);
    return 0;
}
