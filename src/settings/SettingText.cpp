#include "settings/SettingText.h"

#include "common/IsoDate.h"

namespace ostrel {

std::optional<qint64> SettingText<qint64>::parse(const QString& raw)
{
    bool ok = false;
    const qint64 value = raw.trimmed().toLongLong(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

std::optional<double> SettingText<double>::parse(const QString& raw)
{
    bool ok = false;
    const double value = raw.trimmed().toDouble(&ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<bool> SettingText<bool>::parse(const QString& raw)
{
    const QString value = raw.trimmed().toLower();
    if (value == u"true" || value == u"1") return true;
    if (value == u"false" || value == u"0") return false;
    return std::nullopt;
}

std::optional<std::optional<Date>> SettingText<std::optional<Date>>::parse(const QString& raw)
{
    return std::optional<std::optional<Date>>(IsoDate::parse(raw));
}

QVariant SettingText<std::optional<Date>>::format(const std::optional<Date>& value)
{
    return value ? QVariant(IsoDate::string(*value)) : QVariant();
}

} // namespace ostrel
