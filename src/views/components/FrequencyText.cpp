#include "views/components/FrequencyText.h"

#include <cmath>

namespace ostrel::FrequencyText {

QString hertz(double frequency, const QLocale& userLocale)
{
    // "1000 Hz", never "1,000 Hz".
    QLocale locale = userLocale;
    locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
    if (frequency < 100.0) return locale.toString(frequency, 'f', 1) + " Hz";
    if (frequency < 1000.0) return locale.toString(std::round(frequency), 'f', 0) + " Hz";
    if (frequency < 10000.0) return locale.toString(frequency / 1000.0, 'f', 2) + " kHz";
    return locale.toString(frequency / 1000.0, 'f', 1) + " kHz";
}

QString axisLabel(double frequency)
{
    if (frequency >= 1000.0) {
        // At most one decimal: 1k, 1.2k, 16k.
        const double kilo = std::round(frequency / 100.0) / 10.0;
        if (kilo == std::floor(kilo)) return QString::number(static_cast<long long>(kilo)) + "k";
        return QString::number(kilo, 'f', 1) + "k";
    }
    return QString::number(static_cast<long long>(std::trunc(frequency)));
}

} // namespace ostrel::FrequencyText
