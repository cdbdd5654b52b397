#include "measurement/LevelRange.h"

namespace ostrel::LevelRanges {

LevelRange level(double level, double elevatedFrom, double high)
{
    if (level >= high) return LevelRange::high;
    if (level >= elevatedFrom) return LevelRange::elevated;
    return LevelRange::normal;
}

std::string_view title(LevelRange range)
{
    switch (range) {
    case LevelRange::normal:
        return "Normal";
    case LevelRange::elevated:
        return "Elevated";
    case LevelRange::high:
        return "High";
    }
    return "Normal";
}

} // namespace ostrel::LevelRanges
