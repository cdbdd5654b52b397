#include "views/components/Unhinged.h"

#include <QtGlobal>
#include <array>
#include <cmath>

namespace ostrel::Unhinged {

QString title(LevelRange range)
{
    switch (range) {
    case LevelRange::normal:
        return QStringLiteral("Chill as fuck");
    case LevelRange::elevated:
        return QStringLiteral("Getting fucking loud");
    case LevelRange::high:
        return QStringLiteral("WHAT THE FUCK, TURN IT DOWN");
    }
    return QString();
}

QString feedback(double frequency)
{
    if (!std::isfinite(frequency)) qFatal("Unhinged::feedback takes a finite frequency");
    static const std::array<const char*, 4> lines {
        "FEEDBACK, PULL THE FUCKING FADER",
        "Something's screaming like a goddamn kettle",
        "Oh shit, it's ringing",
        "Feedback. Who the fuck EQ'd this?",
    };
    const double whole = std::fabs(std::round(frequency));
    const auto index = static_cast<std::size_t>(std::fmod(whole, 4.0));
    return QString::fromUtf8(lines[index]);
}

} // namespace ostrel::Unhinged
