#pragma once

// Lives on the audio thread: owns the QAudioSource, reads each delivery into a reusable buffer
// and hands it to the tap. Nothing here touches the main thread's state.
#include <optional>
#include <vector>

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSource>
#include <QObject>
#include <memory>

#include "measurement/MeasurementPipeline.h"

namespace ostrel {

class AudioCaptureWorker : public QObject {
    Q_OBJECT

public:
    // The capture buffer: short enough that the first reading comes at once (a long buffer on
    // PulseAudio delivers nothing for the first second), long enough to ride out a busy moment.
    static constexpr int bufferMicroseconds = 20000;
    // What one read takes at most, and so the largest block handed to the tap.
    static constexpr int readMicroseconds = 100000;

    static int largestBlock(const QAudioFormat& format)
    {
        return format.framesForDuration(readMicroseconds);
    }

    std::optional<QString> start(const QAudioDevice& device, const QAudioFormat& format,
        MeasurementPipeline::TapProvider tap);
    void stop();
    bool isRunning() const;
    std::optional<QAudioFormat> format() const;

signals:
    void failed();

private:
    void readAvailable();

    std::unique_ptr<QAudioSource> source_;
    QIODevice* io_ = nullptr;
    MeasurementPipeline::TapProvider tap_;
    std::vector<std::byte> buffer_;
    int bytesPerFrame_ = 0;
    int channelCount_ = 0;
};

} // namespace ostrel
