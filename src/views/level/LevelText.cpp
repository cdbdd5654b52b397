#include "views/level/LevelText.h"

namespace ostrel::LevelText {

QString number(double level, const QLocale& locale)
{
    return locale.toString(level, 'f', 1);
}

QString decibels(std::optional<double> level, const QLocale& locale)
{
    if (!level) return QString();
    return number(*level, locale) + QStringLiteral(" dB");
}

} // namespace ostrel::LevelText
