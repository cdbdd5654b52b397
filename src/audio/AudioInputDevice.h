#pragma once

// One capture device as the station lists it. `uid` is what settings store: on PulseAudio and
// PipeWire the source name, stable across restarts of the server.
#include <vector>

#include <QString>

namespace ostrel {

struct AudioInputDevice {
    QString uid;
    QString name;
    qint64 inputChannels = 0;
    double nominalSampleRate = 48000.0;
    std::vector<double> availableSampleRates;

    bool operator==(const AudioInputDevice&) const = default;
};

} // namespace ostrel
