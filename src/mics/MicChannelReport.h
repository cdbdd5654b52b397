#pragma once

// One channel's state as a receiver link read it.
#include <QString>

namespace ostrel {

struct MicChannelReport {
    // The receiver's key, "#", and the channel counted from 1.
    QString key;
    QString name;
    bool hasSignal = false;
    bool lowSignal = false;
    bool lowBattery = false;

    friend bool operator==(const MicChannelReport&, const MicChannelReport&) = default;
};

} // namespace ostrel
