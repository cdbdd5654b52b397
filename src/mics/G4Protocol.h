#pragma once

// The plain-text UDP protocol of Sennheiser ew G4 receivers (EM 300-500 G4, firmware 1.7 or
// later): the datagrams the station sends and what it reads from the receiver's replies. The
// receiver's own warning words decide; its numbers are kept but never compared.
#include <optional>
#include <set>

#include <QByteArray>
#include <QString>

#include "common/Date.h"

namespace ostrel::G4Protocol {

// The control port, on the receiver and, when binding is on, on this side too.
inline constexpr quint16 port = 53212;

struct Status {
    std::optional<QString> name;
    std::optional<qint64> rfLevel;
    std::optional<bool> pilot;
    std::optional<qint64> battery;
    std::set<QString> warnings;
    std::optional<Date> lastHeard;

    bool hasSignal() const;
    bool lowSignal() const;
    bool lowBattery() const;

    friend bool operator==(const Status&, const Status&) = default;
};

// "Push <timeout> <cycle ms> <mode>\r".
QByteArray push(qint64 timeout, qint64 cycleMilliseconds, qint64 mode);
// Asks for the name; the first datagram of a subscription.
QByteArray nameRequest();
// The push of a subscription: 60 s timeout, every 500 ms, everything.
QByteArray subscribePush();
// Ends the push before the connection closes.
QByteArray stopPush();

// Reads every line of a datagram into the status. True when any line was a known command; only
// then is `lastHeard` set.
bool apply(const QString& text, Status& status, Date at);

} // namespace ostrel::G4Protocol
