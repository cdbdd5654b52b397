#pragma once

// The wording behind "Unhinged Mode": swearing in place of the status lines' words. It touches
// visible text only; what screen readers hear, and every value kept or sent, stays normal.
#include <QString>

#include "measurement/LevelRange.h"

namespace ostrel::Unhinged {

QString title(LevelRange range);
// One of four lines, picked by the warning's frequency so that one ringing tone keeps its line
// while it lasts. The frequency must be a finite number; anything else stops the process.
QString feedback(double frequency);

} // namespace ostrel::Unhinged
