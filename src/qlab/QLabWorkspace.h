#pragma once

// A workspace open in QLab, as offered to the user for the station to follow.
#include <QString>

namespace ostrel {

struct QLabWorkspace {
    QString id;
    QString name;

    bool operator==(const QLabWorkspace&) const = default;
};

} // namespace ostrel
