#pragma once

// How the cue views write running times and lists of cues.
#include <vector>

#include <QLocale>
#include <QString>

#include "qlab/QLabCue.h"

namespace ostrel::CueText {

// "0:07", "12:05", "1:02:03"; negative times read as 0.
QString duration(double seconds);
// The number and the name, joined by a blank, empty parts dropped.
QString label(const QLabCue& cue);
// "12 Preshow, House out and 14 Overture", in the locale's list style.
QString list(const std::vector<QLabCue>& cues, const QLocale& locale = QLocale());

} // namespace ostrel::CueText
