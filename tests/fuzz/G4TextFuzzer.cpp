// Feeds arbitrary datagrams to the ew G4 text parser, as the link does with every one that is
// ASCII, and checks the rules that must hold whatever arrives.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <QByteArray>
#include <QString>

#include "mics/G4Protocol.h"

using namespace ostrel;

namespace {

void require(bool condition)
{
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(size));
    const Date at = addingSeconds(Date {}, 1'700'000'000.0);
    G4Protocol::Status status;
    const bool known = G4Protocol::apply(text, status, at);
    // Only a known line is proof of life.
    require(known == status.lastHeard.has_value());
    require(!status.warnings.contains(QStringLiteral("OK")));
    if (status.hasSignal()) require(status.rfLevel.has_value());
    // Applying twice reads the same.
    G4Protocol::Status again = status;
    G4Protocol::apply(text, again, at);
    require(again == status);
    return 0;
}
