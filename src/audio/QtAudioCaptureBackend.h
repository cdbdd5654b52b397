#pragma once

// Capture through Qt Multimedia (PulseAudio or PipeWire on Linux). The device list is polled,
// since Qt 6.4 does not report changes on these servers; capture runs on a thread of its own.
#include <QAudioDevice>
#include <QMediaDevices>
#include <QStringList>
#include <QThread>
#include <QTimer>
#include <map>

#include "audio/AudioCaptureBackend.h"

namespace ostrel {

class AudioCaptureWorker;

class QtAudioCaptureBackend : public AudioCaptureBackend {
    Q_OBJECT

public:
    static constexpr int devicePollMs = 500;

    explicit QtAudioCaptureBackend(int pollMilliseconds = devicePollMs, QObject* parent = nullptr);
    ~QtAudioCaptureBackend() override;

    std::vector<AudioInputDevice> inputDevices() override;
    std::optional<QString> defaultInputDeviceUID() override;
    bool requestPermission() override;
    std::optional<Format> inputFormat(const AudioInputDevice& device) override;
    bool setNominalSampleRate(const AudioInputDevice& device, double rate) override;
    std::optional<QString> start(const AudioInputDevice& device, const Format& format,
        MeasurementPipeline::TapProvider tap) override;
    void stop() override;
    bool isRunning() const override;
    std::optional<Format> runningFormat() const override;

    // The rates a device offers: the usual candidates inside its reported range.
    static std::vector<double> offeredRates(int minimum, int maximum);
    static AudioInputDevice describe(const QAudioDevice& device);

private:
    std::optional<QAudioDevice> find(const QString& uid) const;
    // The server's preferred rate unless one was chosen for this device.
    double rateOf(const QAudioDevice& device) const;
    void poll();
    QStringList snapshot() const;

    QMediaDevices mediaDevices_;
    QThread audioThread_;
    AudioCaptureWorker* worker_ = nullptr;
    QTimer pollTimer_;
    QStringList lastSnapshot_;
    // Rates chosen per device (by id), standing in for the device property a sound server
    // doesn't offer: each interface keeps its own, and they last as long as the station runs.
    std::map<QString, double> chosenRates_;
};

} // namespace ostrel
