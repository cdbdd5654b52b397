#pragma once

// One announced service as a resolver reports it: its name, where it is and its TXT record.
#include <vector>

#include <QByteArray>
#include <QString>

namespace ostrel {

struct DnsSdService {
    QString name;
    QString type;
    QString domain;
    QString hostName;
    // As text; an IPv6 link-local address carries its interface zone ("fe80::1%eth0").
    QString address;
    quint16 port = 0;
    // The record's strings as sent, "key=value" or "key".
    std::vector<QByteArray> txt;
};

} // namespace ostrel
