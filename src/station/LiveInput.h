#pragma once

// The measurement microphone as a source of intervals: owns the audio input, starts it on the
// chosen device and channel, and follows the input settings. Main thread only.
#include <functional>
#include <memory>

#include <QObject>

#include "audio/AudioCaptureBackend.h"
#include "audio/AudioInput.h"
#include "measurement/InputSettings.h"
#include "station/IntervalSource.h"

namespace ostrel {

class LiveInput : public QObject, public IntervalSource {
    Q_OBJECT

public:
    using Clock = std::function<Date()>;

    LiveInput(std::unique_ptr<AudioCaptureBackend> backend, InputSettings& settings, Clock clock,
        QObject* parent = nullptr);
    ~LiveInput() override;

    // Starts the input and follows the input settings from then on.
    void start() override;
    void stop() override;
    void configure(const MeasurementSettings& settings) override;
    // After a failure: starts again with the present settings.
    void restart();

    // A crew secondary's own inputs stay off whatever the settings say; the settings are read
    // again when it stops being one.
    void setSuspended(bool suspended) { isSuspended_ = suspended; }
    bool isSuspended() const { return isSuspended_; }
    AudioInput& audio() { return audio_; }
    // How often the input settings have been applied, for tests.
    int applyCount() const { return applies_; }

signals:
    // Another device or channel was chosen: what was measured before belongs to another input.
    void inputChanged();

private:
    void applySettings();

    AudioInput audio_;
    InputSettings& settings_;
    Clock clock_;
    bool isFollowing_ = false;
    bool isSuspended_ = false;
    int applies_ = 0;
};

} // namespace ostrel
