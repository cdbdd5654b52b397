#pragma once

// The small records behind the level graph and the band displays.
#include <cstdint>
#include <vector>

#include <QString>
#include <QUuid>

#include "common/Date.h"

namespace ostrel {

struct GraphPoint {
    std::int64_t id = 0;
    Date date;
    double level = 0.0;
    bool operator==(const GraphPoint&) const = default;
};

struct GraphMarker {
    QUuid id;
    Date date;
    QString label;
    bool operator==(const GraphMarker&) const = default;
};

struct BandDisplay {
    std::vector<double> levels;
    std::vector<double> peaks;
    bool operator==(const BandDisplay&) const = default;
};

} // namespace ostrel
