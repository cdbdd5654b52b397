#pragma once

// An update feed in the appcast form: an RSS 2.0 channel whose items carry the Sparkle
// namespace's version elements or enclosure attributes.
#include <QByteArray>
#include <QString>
#include <optional>
#include <variant>
#include <vector>

#include "updates/AppcastItem.h"

namespace ostrel::Appcast {

inline constexpr const char* sparkleNamespace
    = "http://www.andymatuschak.org/xml-namespaces/sparkle";
// Feeds larger than this are refused unread: a real one is a few kilobytes.
inline constexpr qsizetype maximumBytes = 1024 * 1024;

// The releases of a feed meant for this station, in feed order: an item without a version or
// an address is left out, and so is one for another system or on a channel of its own (betas).
// A feed that isn't an RSS channel gives a message instead.
std::variant<std::vector<AppcastItem>, QString> parse(const QByteArray& body);

// The newest release strictly newer than `current`, if any.
std::optional<AppcastItem> newest(const std::vector<AppcastItem>& items, const QString& current);

} // namespace ostrel::Appcast
