#pragma once

// A DNS-SD TXT record read as keys and values (RFC 6763, section 6). Keys are compared without
// case, so they are kept in lower case; the first string with a key wins; a string without "="
// is a key with an empty value; a string with an empty or non-printable key is ignored. A value
// that is not UTF-8 is dropped with its key, rather than shown as replacement characters.
#include <map>
#include <vector>

#include <QByteArray>
#include <QString>

namespace ostrel::DnsSdTxt {

std::map<QString, QString> map(const std::vector<QByteArray>& strings);

} // namespace ostrel::DnsSdTxt
