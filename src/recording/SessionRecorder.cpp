#include "recording/SessionRecorder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#include <QDir>

#include "exposure/ExposureFormat.h"
#include "recording/RecordingLog.h"
#include "sessions/RecordedFrame.h"
#include "sessions/RecordingFormat.h"

#ifdef __linux__
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace ostrel {

namespace {

// Below the audio and interface threads, as a background writer should be; the queue holds
// seconds of sound, so a busy moment only delays the disk.
constexpr int workerNiceness = 5;

void nameAndLowerThisThread()
{
#ifdef __linux__
    std::array<char, 16> name {};
    std::memcpy(name.data(), SessionRecorder::queueLabel,
        std::min(name.size() - 1, std::strlen(SessionRecorder::queueLabel)));
    pthread_setname_np(pthread_self(), name.data());
    // On Linux the niceness of PRIO_PROCESS with a thread id is that thread's alone.
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), workerNiceness);
#endif
}

} // namespace

SessionRecorder::CreateResult SessionRecorder::create(
    const QString& folder, Date sessionStart, bool recordsAudio, RecorderQueue::Capacity capacity)
{
    if (!QDir().mkpath(folder)) {
        return QStringLiteral("The folder %1 can't be created.").arg(folder);
    }
    auto frames = std::make_unique<QFile>(QDir(folder).filePath(RecordingFormat::framesFileName));
    // Unbuffered: each frame reaches the system in one write, so a killed process leaves
    // every whole frame in the file.
    if (!frames->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return frames->errorString();
    }
    const QByteArray header = RecordingFormat::header();
    if (frames->write(header) != header.size()) {
        return frames->errorString();
    }
    auto exposure = std::make_unique<QFile>(QDir(folder).filePath(ExposureFormat::fileName));
    if (!exposure->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return exposure->errorString();
    }
    const QByteArray exposureHeader = ExposureFormat::header();
    if (exposure->write(exposureHeader) != exposureHeader.size()) {
        return exposure->errorString();
    }
    return std::shared_ptr<SessionRecorder>(new SessionRecorder(
        folder, sessionStart, recordsAudio, std::move(frames), std::move(exposure), capacity));
}

int SessionRecorder::fileSampleRate(double sampleRate)
{
    constexpr double highest = 48000.0;
    constexpr double cdRate = 44100.0;
    if (sampleRate <= highest) return static_cast<int>(std::lround(sampleRate));
    return std::fmod(sampleRate, cdRate) == 0.0 ? 44100 : 48000;
}

SessionRecorder::SessionRecorder(QString folder, Date sessionStart, bool recordsAudio,
    std::unique_ptr<QFile> frames, std::unique_ptr<QFile> exposure,
    RecorderQueue::Capacity capacity)
    : folder_(std::move(folder)),
      sessionStart_(sessionStart),
      recordsAudio_(recordsAudio),
      queue_(capacity)
{
    state_.frames = std::move(frames);
    state_.exposure = std::move(exposure);
    worker_ = std::thread([this] { run(); });
}

SessionRecorder::~SessionRecorder()
{
    finish();
}

void SessionRecorder::append(std::span<const float> samples, double sampleRate,
    const std::optional<MeasurementInterval>& interval, Date at)
{
    if (!accepting_.load(std::memory_order_acquire)) return;
    queue_.push(samples, sampleRate, interval, at);
    appended_.fetch_add(1, std::memory_order_release);
    wake_.release();
}

SessionRecorder::Outcome SessionRecorder::finish()
{
    {
        const std::lock_guard lock(finishMutex_);
        if (worker_.joinable()) {
            accepting_.store(false, std::memory_order_release);
            stopRequested_.store(true, std::memory_order_release);
            wake_.release();
            worker_.join();
        }
    }
    const std::lock_guard lock(stateMutex_);
    return state_.outcome;
}

SessionRecorder::StateSnapshot SessionRecorder::state() const
{
    const std::lock_guard lock(stateMutex_);
    StateSnapshot snapshot;
    snapshot.hasAudioFile = state_.audioFile != nullptr;
    snapshot.fileSampleRate = state_.fileSampleRate;
    if (state_.converter) snapshot.converterInputRate = state_.converter->inputRate();
    if (state_.audioFile) snapshot.encoderDelay = state_.audioFile->encoderDelay();
    snapshot.audioSeconds = state_.audioSeconds;
    snapshot.hasFrames = state_.frames != nullptr;
    snapshot.outcome = state_.outcome;
    snapshot.isFinished = state_.isFinished;
    return snapshot;
}

void SessionRecorder::setExposureProfile(const ExposureProfile& profile)
{
    const std::lock_guard lock(stateMutex_);
    state_.exposureProfile = profile;
}

void SessionRecorder::waitUntilWritten()
{
    const std::uint64_t target = appended_.load(std::memory_order_acquire);
    std::unique_lock lock(progressMutex_);
    progress_.wait(lock, [&] { return written_ >= target || workerDone_; });
}

void SessionRecorder::run()
{
    nameAndLowerThisThread();
    for (;;) {
        wake_.acquire();
        // Read before draining, so that every block appended before `finish` is written.
        const bool stopping = stopRequested_.load(std::memory_order_acquire);
        const std::size_t count = queue_.drain([this](const RecorderQueue::Block& block) {
            const std::lock_guard lock(stateMutex_);
            write(block);
        });
        if (stopping) finishOnWorker();
        {
            const std::lock_guard lock(progressMutex_);
            written_ += count;
            workerDone_ = stopping;
        }
        progress_.notify_all();
        if (stopping) return;
    }
}

void SessionRecorder::write(const RecorderQueue::Block& block)
{
    if (state_.isFinished || !(block.sampleRate > 0.0)) return;

    if (recordsAudio_ && !state_.outcome.audioFailed) {
        if (const auto failure = writeAudio(block.samples, block.sampleRate)) {
            qCWarning(ostrelRecording, "Audio recording stopped: %s", qUtf8Printable(*failure));
            state_.outcome.audioFailed = true;
        }
    }
    // The time line goes on without the sound, so frames stay on the audio clock.
    state_.audioSeconds += static_cast<double>(block.samples.size()) / block.sampleRate;

    const std::optional<MeasurementInterval>& interval = *block.interval;
    if (interval) writeExposure(*interval);
    if (!interval || !state_.frames || state_.outcome.measurementsFailed) return;
    const QByteArray bytes = RecordingFormat::encode(
        RecordedFrame {state_.audioSeconds, secondsBetween(sessionStart_, block.at), *interval});
    // A short write says nothing of why; asking for the rest makes the system say it.
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 part
            = state_.frames->write(bytes.constData() + written, bytes.size() - written);
        if (part <= 0) break;
        written += part;
    }
    if (written != bytes.size()) {
        const QString reason = state_.frames->error() != QFileDevice::NoError
            ? state_.frames->errorString()
            : QStringLiteral("only %1 of %2 bytes were written").arg(written).arg(bytes.size());
        qCWarning(ostrelRecording, "Measurement recording stopped: %s", qUtf8Printable(reason));
        state_.outcome.measurementsFailed = true;
    }
}

void SessionRecorder::writeExposure(const MeasurementInterval& interval)
{
    if (!state_.exposure || state_.outcome.exposureFailed || !(interval.sampleRate > 0.0)) return;
    const double duration = static_cast<double>(interval.sampleCount) / interval.sampleRate;
    const QByteArray bytes = ExposureFormat::encode(ExposureFrame {state_.audioSeconds,
        ExposureSample {
            interval.exposureEnergy / interval.sampleRate, duration, interval.exposurePeakPower},
        state_.exposureProfile});
    // One write per frame, as for the measurements: a killed station keeps every whole one.
    if (state_.exposure->write(bytes) != bytes.size()) {
        qCWarning(ostrelRecording, "Exposure recording stopped: %s",
            qUtf8Printable(state_.exposure->errorString()));
        state_.outcome.exposureFailed = true;
    }
}

std::optional<QString> SessionRecorder::writeAudio(
    std::span<const float> samples, double sampleRate)
{
    if (!state_.audioFile) {
        const int rate = fileSampleRate(sampleRate);
        state_.fileSampleRate = rate;
        auto opened
            = AacFileWriter::open(QDir(folder_).filePath(RecordingFormat::audioFileName), rate);
        if (const QString* failure = std::get_if<QString>(&opened)) return *failure;
        state_.audioFile = std::move(std::get<std::unique_ptr<AacFileWriter>>(opened));
    }
    const int fileRate = *state_.fileSampleRate;
    if (sampleRate == static_cast<double>(fileRate)) {
        if (auto failure = flushConverter()) return failure;
        state_.converter.reset();
        return state_.audioFile->write(samples);
    }
    if (!state_.converter || state_.converter->inputRate() != sampleRate) {
        // The samples the old converter still holds belong before this block.
        if (auto failure = flushConverter()) return failure;
        state_.converter.reset();
        auto made = SampleRateConverter::make(sampleRate, fileRate);
        if (const QString* failure = std::get_if<QString>(&made)) return *failure;
        state_.converter = std::move(std::get<std::unique_ptr<SampleRateConverter>>(made));
    }
    if (auto failure = state_.converter->convert(samples, converted_)) return failure;
    if (converted_.empty()) return std::nullopt;
    return state_.audioFile->write(converted_);
}

std::optional<QString> SessionRecorder::flushConverter()
{
    if (!state_.converter || !state_.audioFile) return std::nullopt;
    if (auto failure = state_.converter->flush(converted_)) return failure;
    return state_.audioFile->write(converted_);
}

void SessionRecorder::finishOnWorker()
{
    const std::lock_guard lock(stateMutex_);
    state_.isFinished = true;
    if (state_.frames) {
        state_.frames->close();
        state_.frames.reset();
    }
    if (state_.exposure) {
        state_.exposure->close();
        state_.exposure.reset();
    }
    if (state_.audioFile) {
        // Errors at the end are not worth a warning: whatever reached the disk stays playable.
        if (!state_.outcome.audioFailed) {
            (void)flushConverter();
            (void)state_.audioFile->close();
        }
        state_.audioFile.reset();
    }
}

} // namespace ostrel
