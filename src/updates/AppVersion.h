#pragma once

// The order of version strings as update feeds mean it: "1.10" is newer than "1.9", "1.0.1"
// newer than "1.0", and a letter after the last common part marks a pre-release, so "1.0" is
// newer than "1.0b2".
#include <QString>

namespace ostrel::AppVersion {

// Negative when `a` is older than `b`, zero when they are the same version, positive when newer.
int compare(const QString& a, const QString& b);

} // namespace ostrel::AppVersion
