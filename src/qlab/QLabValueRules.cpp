#include "qlab/QLabValueRules.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace ostrel::QLabValueRules {

namespace {

std::optional<double> plainNumber(const QJsonValue& value)
{
    if (value.isDouble()) return value.toDouble();
    if (value.isBool()) return value.toBool() ? 1.0 : 0.0;
    return std::nullopt;
}

QString decimalText(double number)
{
    // Whole numbers read as integers, as QLab's cue numbers do: 12, not 12.0.
    if (number == std::trunc(number) && std::abs(number) < 9.0e15)
        return QString::number(static_cast<qint64>(number));
    std::array<char, 64> text {};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(result.ptr - text.data()));
}

// Whole text or nothing: no spaces, no trailing garbage, independent of the user's locale.
std::optional<double> strictParse(const QString& text)
{
    std::string digits = text.toStdString();
    std::string_view view = digits;
    if (view.starts_with('+')) {
        view.remove_prefix(1);
        if (view.starts_with('+') || view.starts_with('-')) return std::nullopt;
    }
    if (view.empty()) return std::nullopt;
    double number = 0;
    const auto result = std::from_chars(view.data(), view.data() + view.size(), number);
    if (result.ec != std::errc {} || result.ptr != view.data() + view.size()) return std::nullopt;
    return number;
}

} // namespace

QString text(const QJsonValue& value)
{
    if (value.isString()) return value.toString();
    if (const auto number = plainNumber(value)) return decimalText(*number);
    return {};
}

std::optional<double> number(const QJsonValue& value)
{
    const auto parsed = value.isString() ? strictParse(value.toString()) : plainNumber(value);
    // "inf" and "nan" parse, but no time or index from QLab is either, and the timecode
    // arithmetic downstream must never see one.
    if (!parsed || !std::isfinite(*parsed)) return std::nullopt;
    return parsed;
}

std::optional<bool> boolean(const QJsonValue& value)
{
    if (value.isString()) {
        const QString lowered = value.toString().toLower();
        return lowered == QLatin1String("1") || lowered == QLatin1String("true")
            || lowered == QLatin1String("yes");
    }
    if (const auto number = plainNumber(value)) return *number != 0;
    return std::nullopt;
}

std::optional<std::int64_t> truncated(double number)
{
    // 2^63 itself does not fit, hence the strict upper bound.
    if (!std::isfinite(number) || number < -9.223372036854775808e18
        || number >= 9.223372036854775808e18)
        return std::nullopt;
    return static_cast<std::int64_t>(number);
}

} // namespace ostrel::QLabValueRules
