#pragma once

// What the QLab tests compare: the ids of a list of cues, and the address of a cue's values.
#include <vector>

#include <QString>
#include <QStringList>

#include "qlab/QLabCue.h"

namespace ostrel::testsupport {

inline QString valuesAddress(const QString& cue)
{
    return QStringLiteral("/workspace/W-1/cue_id/%1/valuesForKeys").arg(cue);
}

inline QStringList ids(const std::vector<QLabCue>& cues)
{
    QStringList result;
    for (const auto& cue : cues)
        result.append(cue.id);
    return result;
}

} // namespace ostrel::testsupport
