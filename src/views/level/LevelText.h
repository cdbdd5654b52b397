#pragma once

// How a level is written on screen and spoken: one decimal in the user's number format.
#include <optional>

#include <QLocale>
#include <QString>

namespace ostrel::LevelText {

// Stands where a level is missing; one character, so the readout keeps its size.
inline constexpr const char16_t* missing = u"\u2014";

QString number(double level, const QLocale& locale = QLocale());
// "94.2 dB", or empty without a value.
QString decibels(std::optional<double> level, const QLocale& locale = QLocale());

} // namespace ostrel::LevelText
