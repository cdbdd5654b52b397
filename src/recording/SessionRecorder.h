#pragma once

// Records a show session into its folder: the measurement microphone as "audio.aac" and every
// measurement interval as a frame of "measurements.ostrel", both on the audio clock so that
// replay keeps level, spectrum and sound together. The audio thread only copies a block into
// the queue; a worker thread of its own does all encoding and writing, one block after the
// other. Either stream may fail (a full disk) while the other goes on; the show never stops.
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <span>
#include <thread>
#include <variant>
#include <vector>

#include <QFile>
#include <QString>

#include "common/Date.h"
#include "exposure/ExposureProfile.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/PipelineRecorder.h"
#include "recording/AacFileWriter.h"
#include "recording/SampleRateConverter.h"
#include "sessions/RecorderQueue.h"

namespace ostrel {

class SessionRecorder final : public PipelineRecorder {
public:
    // The worker's name. The system shows only its first 15 characters.
    static constexpr char queueLabel[] = "Ostrel.SessionRecorder";

    struct Outcome {
        bool audioFailed = false;
        bool measurementsFailed = false;
        bool exposureFailed = false;
        bool operator==(const Outcome&) const = default;
    };

    // A copy of the state, taken under its lock.
    struct StateSnapshot {
        bool hasAudioFile = false;
        std::optional<int> fileSampleRate; // the audio file's rate, once the first block chose it
        std::optional<double> converterInputRate; // when a converter is in use
        std::optional<int> encoderDelay; // the audio file's priming, in samples at its rate
        double audioSeconds = 0.0;
        bool hasFrames = false;
        Outcome outcome;
        bool isFinished = false;
    };

    using CreateResult = std::variant<std::shared_ptr<SessionRecorder>, QString>;

    // Makes the folder (with its parents) and writes the headers of the measurements file and
    // of the exposure file beside it. Fails with
    // the reason when either can't be done; then the session runs without recording.
    static CreateResult create(const QString& folder, Date sessionStart, bool recordsAudio,
        RecorderQueue::Capacity capacity = {});

    // The audio file's rate for a given input rate: the input's own up to 48 kHz; above that
    // 44.1 kHz for whole multiples of 44.1 kHz, else 48 kHz.
    static int fileSampleRate(double sampleRate);

    // Finishes the recording if nobody did.
    ~SessionRecorder() override;
    SessionRecorder(const SessionRecorder&) = delete;
    SessionRecorder& operator=(const SessionRecorder&) = delete;

    // Audio thread, one caller at a time (the queue has one producer): copies the block into the
    // queue and returns; never waits on the worker.
    // `interval` is the one this block finished, if any. Ignored after `finish`.
    void append(std::span<const float> samples, double sampleRate,
        const std::optional<MeasurementInterval>& interval, Date at) override;

    // Main thread: waits until every block appended before it is written, closes both files
    // and says what failed. Later calls give the same outcome.
    Outcome finish();

    const QString& folder() const noexcept { return folder_; }
    Date sessionStart() const noexcept { return sessionStart_; }
    bool recordsAudio() const noexcept { return recordsAudio_; }
    StateSnapshot state() const;
    // Any thread: the profile each interval's exposure frame is written with from now on.
    void setExposureProfile(const ExposureProfile& profile);

    // Waits until the worker has written every block appended so far. For tests and tools that
    // must look at the files during a recording; a show never needs it.
    void waitUntilWritten();
    std::uint64_t overflowCount() const { return queue_.overflowCount(); }

private:
    struct State {
        std::unique_ptr<AacFileWriter> audioFile;
        std::optional<int> fileSampleRate;
        std::unique_ptr<SampleRateConverter> converter;
        double audioSeconds = 0.0;
        std::unique_ptr<QFile> frames;
        std::unique_ptr<QFile> exposure;
        ExposureProfile exposureProfile;
        Outcome outcome;
        bool isFinished = false;
    };

    SessionRecorder(QString folder, Date sessionStart, bool recordsAudio,
        std::unique_ptr<QFile> frames, std::unique_ptr<QFile> exposure,
        RecorderQueue::Capacity capacity);

    void run();
    void write(const RecorderQueue::Block& block);
    void writeExposure(const MeasurementInterval& interval);
    std::optional<QString> writeAudio(std::span<const float> samples, double sampleRate);
    std::optional<QString> flushConverter();
    void finishOnWorker();

    const QString folder_;
    const Date sessionStart_;
    const bool recordsAudio_;

    mutable std::mutex stateMutex_;
    State state_;
    std::vector<float> converted_; // worker only: the converter's output for one block

    RecorderQueue queue_;
    std::counting_semaphore<> wake_ {0};
    std::atomic<bool> accepting_ {true};
    std::atomic<bool> stopRequested_ {false};
    std::atomic<std::uint64_t> appended_ {0};

    std::mutex progressMutex_; // for waiters on the worker's progress only
    std::condition_variable progress_;
    std::uint64_t written_ = 0; // under progressMutex_
    bool workerDone_ = false; // under progressMutex_

    std::mutex finishMutex_;
    std::thread worker_;
};

} // namespace ostrel
