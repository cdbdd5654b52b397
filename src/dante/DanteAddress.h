#pragma once

// A device's address as the station shows it: a host name or IPv4 address as it stands, an IPv6
// address without its interface zone ("fe80::1%eth0" shows as "fe80::1").
#include <QString>

namespace ostrel::DanteAddress {

QString describe(const QString& address);

} // namespace ostrel::DanteAddress
