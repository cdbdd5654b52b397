#include "views/qlab/CueText.h"

#include <QStringList>
#include <cmath>

namespace ostrel::CueText {

QString duration(double seconds)
{
    const auto whole = static_cast<long long>(std::floor(std::max(seconds, 0.0)));
    const long long hours = whole / 3600;
    const long long minutes = (whole / 60) % 60;
    const long long rest = whole % 60;
    if (hours > 0) {
        return QStringLiteral("%1:%2:%3")
            .arg(hours)
            .arg(minutes, 2, 10, QLatin1Char('0'))
            .arg(rest, 2, 10, QLatin1Char('0'));
    }
    return QStringLiteral("%1:%2").arg(minutes).arg(rest, 2, 10, QLatin1Char('0'));
}

QString label(const QLabCue& cue)
{
    QStringList parts;
    for (const QString& part : {cue.number, cue.displayName()})
        if (!part.isEmpty()) parts << part;
    return parts.join(QLatin1Char(' '));
}

QString list(const std::vector<QLabCue>& cues, const QLocale& locale)
{
    QStringList labels;
    for (const QLabCue& cue : cues)
        labels << label(cue);
    return locale.createSeparatedList(labels);
}

} // namespace ostrel::CueText
