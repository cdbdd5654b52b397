#pragma once

// Owns the live capture: picks the device, starts it with a tap that feeds the measurement
// pipeline, and restarts the whole chain when the hardware changes under it. Main thread only;
// the tap runs on the capture's audio thread and touches nothing but the pipeline.
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QObject>
#include <QTimer>

#include "audio/AudioCaptureBackend.h"
#include "audio/AudioInputDevice.h"
#include "measurement/MeasurementPipeline.h"

namespace ostrel {

class AudioInput : public QObject {
    Q_OBJECT
    Q_PROPERTY(ostrel::AudioInput::Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(double sampleRate READ sampleRate NOTIFY sampleRateChanged)
    Q_PROPERTY(qint64 channelCount READ channelCount NOTIFY channelCountChanged)

public:
    enum class Status { stopped, running, permissionDenied, deviceUnavailable, failed };
    Q_ENUM(Status)

    // Hardware events within this time of each other collapse into one restart.
    static constexpr int defaultRestartDelayMs = 400;

    explicit AudioInput(std::unique_ptr<AudioCaptureBackend> backend, QObject* parent = nullptr);
    ~AudioInput() override;

    void start(const QString& deviceUID, qint64 channel);
    void stop();
    void select(const QString& deviceUID, qint64 channel);
    void setSampleRate(double rate);
    void refreshDevices();

    Status status() const { return status_; }
    const std::vector<AudioInputDevice>& devices() const { return devices_; }
    const std::optional<AudioInputDevice>& activeDevice() const { return activeDevice_; }
    qint64 channelCount() const { return channelCount_; }
    double sampleRate() const { return sampleRate_; }
    // The zero-based channel being measured, after the fall-back to the last one that exists.
    qint64 measuredChannel() const { return measuredChannel_; }
    const std::shared_ptr<MeasurementPipeline>& pipeline() const { return pipeline_; }
    AudioCaptureBackend& backend() { return *backend_; }

    // Set by the central model; runs on the main thread with every finished interval.
    std::function<void(const MeasurementInterval&)> onInterval;

    void setRestartDelay(int milliseconds) { restartTimer_.setInterval(milliseconds); }
    int restartDelay() const { return restartTimer_.interval(); }
    // Restarts performed, for tests and diagnostics.
    int restartCount() const { return restartCount_; }

    // An empty uid follows the system default (or the first device); a named device that is
    // missing has no stand-in, so a lost interface shows as unavailable.
    std::optional<AudioInputDevice> resolvedDevice(const QString& uid) const;
    static void sortByName(std::vector<AudioInputDevice>& devices);

signals:
    void statusChanged();
    void devicesChanged();
    void activeDeviceChanged();
    void channelCountChanged();
    void sampleRateChanged();

private:
    void restart();
    void stopEngine();
    void scheduleRestart();
    void onDevicesChanged();
    void onConfigurationChanged();
    void setStatus(Status status);
    void setActiveDevice(std::optional<AudioInputDevice> device);

    std::unique_ptr<AudioCaptureBackend> backend_;
    std::shared_ptr<MeasurementPipeline> pipeline_;
    Status status_ = Status::stopped;
    std::vector<AudioInputDevice> devices_;
    std::optional<AudioInputDevice> activeDevice_;
    qint64 channelCount_ = 0;
    double sampleRate_ = 48000.0;
    qint64 measuredChannel_ = 0;
    QString requestedUID_;
    qint64 requestedChannel_ = 0;
    bool listening_ = false;
    bool wantsToRun_ = false;
    bool engineRunning_ = false;
    QTimer restartTimer_;
    int restartCount_ = 0;
};

} // namespace ostrel
