#pragma once

// A scripted capture system: the test sets the device list, the default and permission, and
// sees every start and stop.
#include <vector>

#include "audio/AudioCaptureBackend.h"

namespace ostrel::testsupport {

class FakeCaptureBackend : public AudioCaptureBackend {
    Q_OBJECT

public:
    std::vector<AudioInputDevice> devices;
    std::optional<QString> defaultUID;
    bool permission = true;
    std::optional<QString> startError;
    int starts = 0;
    int stops = 0;
    bool running = false;
    AudioInputDevice lastStarted;
    Format lastFormat;
    MeasurementPipeline::TapProvider tap;
    // When set, the running capture reports this format instead of the one it was started with.
    std::optional<Format> reportedFormat;

    std::vector<AudioInputDevice> inputDevices() override { return devices; }
    std::optional<QString> defaultInputDeviceUID() override { return defaultUID; }
    bool requestPermission() override { return permission; }
    std::optional<Format> inputFormat(const AudioInputDevice& device, double requested) override
    {
        for (const auto& listed : devices) {
            if (listed.uid == device.uid)
                return Format {static_cast<int>(listed.inputChannels),
                    requested > 0 ? requested : listed.nominalSampleRate, true};
        }
        return std::nullopt;
    }
    std::optional<QString> start(const AudioInputDevice& device, const Format& format,
        MeasurementPipeline::TapProvider provider) override
    {
        ++starts;
        if (startError) return startError;
        running = true;
        lastStarted = device;
        lastFormat = format;
        tap = std::move(provider);
        return std::nullopt;
    }
    void stop() override
    {
        ++stops;
        running = false;
        tap = nullptr;
    }
    bool isRunning() const override { return running; }
    std::optional<Format> runningFormat() const override
    {
        if (!running) return std::nullopt;
        return reportedFormat ? reportedFormat : std::optional<Format>(lastFormat);
    }

    void announceDeviceChange() { emit devicesChanged(); }
    void announceConfigurationChange() { emit configurationChanged(); }
};

inline AudioInputDevice device(
    const QString& uid, const QString& name, qint64 channels, double rate = 48000.0)
{
    return AudioInputDevice {uid, name, channels, rate, {44100.0, 48000.0, 96000.0}};
}

} // namespace ostrel::testsupport
