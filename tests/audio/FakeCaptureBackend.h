#pragma once

// A scripted capture system: the test sets the device list, the default and permission, and
// sees every start and stop.
#include <algorithm>
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
    // The device gives no usable format.
    bool refuseFormat = false;
    // Every rate change is refused, as by a device locked to its clock.
    bool refuseRates = false;
    bool interleaved = true;
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
    std::optional<Format> inputFormat(const AudioInputDevice& device) override
    {
        if (refuseFormat) return std::nullopt;
        for (const auto& listed : devices) {
            if (listed.uid == device.uid)
                return Format {static_cast<int>(listed.inputChannels), listed.nominalSampleRate,
                    interleaved, static_cast<int>(listed.nominalSampleRate / 10)};
        }
        return std::nullopt;
    }
    // Like a device property: the rate stays with the listed device.
    bool setNominalSampleRate(const AudioInputDevice& device, double rate) override
    {
        for (auto& listed : devices) {
            if (listed.uid != device.uid) continue;
            const auto& offered = listed.availableSampleRates;
            if (refuseRates || std::find(offered.begin(), offered.end(), rate) == offered.end())
                return false;
            listed.nominalSampleRate = rate;
            return true;
        }
        return false;
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
