#pragma once

// How the station reads a value out of QLab's JSON replies, where the same key may come as a
// number in one version and as text in another.
#include <optional>

#include <QJsonValue>
#include <QString>

namespace ostrel::QLabValueRules {

// JSON true and false count as the numbers 1 and 0 in every rule, as QLab's own JSON reader
// treats them.

// A string as it stands, a number as its decimal text, anything else empty.
QString text(const QJsonValue& value);
// A finite number, or a string that is one and nothing else; anything else is absent.
std::optional<double> number(const QJsonValue& value);
// A number as non-zero, or "1", "true" or "yes" in any case; other strings are false, anything
// else is absent.
std::optional<bool> boolean(const QJsonValue& value);
// The number truncated towards zero; absent when it is not finite or does not fit 64 bits.
std::optional<std::int64_t> truncated(double number);

} // namespace ostrel::QLabValueRules
