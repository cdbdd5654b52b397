#pragma once

// Whether a build has an update feed at all. A build made without one, or with the placeholder
// a fresh checkout carries, has no updater rather than one that fails.
#include <QString>

namespace ostrel::UpdateFeed {

// The address a build gets when nobody sets the feed option: on a reserved example host.
inline constexpr const char* placeholder = "https://updates.example.com/ostrel/appcast.xml";

// False for an empty or malformed address, one that isn't http(s), and the placeholder: any
// address on a reserved example host with the placeholder's path.
bool isConfigured(const QString& address);

} // namespace ostrel::UpdateFeed
