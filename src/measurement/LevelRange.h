#pragma once

// The three ranges that colour the level readout.
#include <string_view>

namespace ostrel {

enum class LevelRange { normal, elevated, high };

namespace LevelRanges {
// Thresholds include themselves; with crossed thresholds `high` wins.
LevelRange level(double level, double elevatedFrom, double high);
std::string_view title(LevelRange range);
} // namespace LevelRanges

} // namespace ostrel
