#pragma once

// What the audio input needs of a capture system: the device list, the default, permission, and
// a capture that feeds interleaved float buffers to a tap on an audio thread. The Qt Multimedia
// backend stands behind it in the station; tests drive a scripted one.
#include <optional>
#include <vector>

#include <QObject>
#include <QString>

#include "audio/AudioInputDevice.h"
#include "measurement/MeasurementPipeline.h"

namespace ostrel {

class AudioCaptureBackend : public QObject {
    Q_OBJECT

public:
    struct Format {
        int channelCount = 0;
        double sampleRate = 0.0;
        bool interleaved = true;
        // The most frames one delivery can hold, so that the tap is sized before the stream.
        int largestBlock = 0;
    };

    using QObject::QObject;
    ~AudioCaptureBackend() override = default;

    virtual std::vector<AudioInputDevice> inputDevices() = 0;
    virtual std::optional<QString> defaultInputDeviceUID() = 0;
    // False when the platform refuses microphone access.
    virtual bool requestPermission() = 0;
    // The format a capture of this device would deliver, at the device's own rate; absent when
    // the device can't be used.
    virtual std::optional<Format> inputFormat(const AudioInputDevice& device) = 0;
    // Sets the rate the device runs at from now on, for every capture of it; false, and nothing
    // changed, when the device refuses the rate.
    virtual bool setNominalSampleRate(const AudioInputDevice& device, double rate) = 0;
    // Starts delivering buffers to `tap` on the audio thread; an error text on failure.
    virtual std::optional<QString> start(
        const AudioInputDevice& device, const Format& format, MeasurementPipeline::TapProvider tap)
        = 0;
    virtual void stop() = 0;
    virtual bool isRunning() const = 0;
    // What the running capture delivers now; absent when nothing runs.
    virtual std::optional<Format> runningFormat() const = 0;

signals:
    // The device list or the default input changed.
    void devicesChanged();
    // The running capture changed format or failed underneath us.
    void configurationChanged();
};

} // namespace ostrel
