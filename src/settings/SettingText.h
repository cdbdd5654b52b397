#pragma once

// How plain values are kept in the preference store. An INI store keeps no types, so "another
// type" reads as "text that does not parse as this type".
#include <cmath>
#include <optional>
#include <string_view>

#include <QString>
#include <QVariant>

#include "common/Date.h"

namespace ostrel {

template <typename T> struct SettingText;

template <> struct SettingText<QString> {
    static std::optional<QString> parse(const QString& raw) { return raw; }
    static QVariant format(const QString& value) { return value; }
};

template <> struct SettingText<qint64> {
    static std::optional<qint64> parse(const QString& raw);
    static QVariant format(const qint64& value) { return value; }
};

template <> struct SettingText<double> {
    static std::optional<double> parse(const QString& raw);
    static QVariant format(const double& value) { return value; }
};

template <> struct SettingText<bool> {
    static std::optional<bool> parse(const QString& raw);
    static QVariant format(const bool& value) { return value; }
};

// Absent removes the key; stored text that is no date reads as absent.
template <> struct SettingText<std::optional<Date>> {
    static std::optional<std::optional<Date>> parse(const QString& raw);
    static QVariant format(const std::optional<Date>& value);
};

// Enumerations stored as their raw text ("A", "fast", "dark"): `fromRaw` is the enumeration's
// own reader, and unknown text gives the default.
template <typename E, std::optional<E> (*fromRaw)(std::string_view), std::string_view (*toRaw)(E)>
struct RawTextSetting {
    static std::optional<E> parse(const QString& raw)
    {
        const QByteArray bytes = raw.toUtf8();
        return fromRaw(std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())));
    }
    static QVariant format(const E& value)
    {
        const std::string_view raw = toRaw(value);
        return QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
    }
};

// Enumerations stored as their integer raw value (3, 6, 12, 24); another number gives the default.
template <typename E, typename Raw, std::optional<E> (*fromRaw)(Raw), int (*toRaw)(E)>
struct RawNumberSetting {
    static std::optional<E> parse(const QString& raw)
    {
        const auto number = SettingText<qint64>::parse(raw);
        if (!number) return std::nullopt;
        return fromRaw(static_cast<Raw>(*number));
    }
    static QVariant format(const E& value) { return toRaw(value); }
};

} // namespace ostrel
