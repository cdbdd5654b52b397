#pragma once

// A capture system with no devices, for a station that must not touch the hardware: screenshots
// and screen tests. Starting it fails as an empty machine would.
#include "audio/AudioCaptureBackend.h"

namespace ostrel {

class SilentCaptureBackend : public AudioCaptureBackend {
    Q_OBJECT

public:
    using AudioCaptureBackend::AudioCaptureBackend;

    std::vector<AudioInputDevice> inputDevices() override { return {}; }
    std::optional<QString> defaultInputDeviceUID() override { return std::nullopt; }
    bool requestPermission() override { return true; }
    std::optional<Format> inputFormat(const AudioInputDevice&) override { return std::nullopt; }
    bool setNominalSampleRate(const AudioInputDevice&, double) override { return false; }
    std::optional<QString> start(
        const AudioInputDevice&, const Format&, MeasurementPipeline::TapProvider) override
    {
        return QStringLiteral("No audio input on this computer.");
    }
    void stop() override { }
    bool isRunning() const override { return false; }
    std::optional<Format> runningFormat() const override { return std::nullopt; }
};

} // namespace ostrel
