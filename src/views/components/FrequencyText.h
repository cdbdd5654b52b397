#pragma once

// How a frequency is written on screen: the readouts' "1.25 kHz" and the axes' "1.2k". Kept for
// the spectrum views, which show both.
#include <QLocale>
#include <QString>

namespace ostrel::FrequencyText {

// "99.9 Hz", "250 Hz", "1.25 kHz", "12.5 kHz"; decimals in the given locale.
QString hertz(double frequency, const QLocale& locale = QLocale());
// Axis label: "1k", "2.5k", "500", "31".
QString axisLabel(double frequency);

} // namespace ostrel::FrequencyText
