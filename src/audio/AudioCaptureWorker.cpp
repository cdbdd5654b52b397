#include "audio/AudioCaptureWorker.h"

#include "audio/AudioLog.h"

namespace ostrel {

std::optional<QString> AudioCaptureWorker::start(
    const QAudioDevice& device, const QAudioFormat& format, MeasurementPipeline::TapProvider tap)
{
    stop();
    source_ = std::make_unique<QAudioSource>(device, format);
    source_->setBufferSize(format.bytesForDuration(bufferMicroseconds));
    tap_ = std::move(tap);
    bytesPerFrame_ = format.bytesPerFrame();
    // Sized once here and never on the audio path.
    buffer_.assign(
        static_cast<std::size_t>(format.bytesForFrames(largestBlock(format))), std::byte {0});
    channelCount_ = format.channelCount();
    io_ = source_->start();
    if (!io_ || source_->error() != QAudio::NoError) {
        const auto error = source_->error();
        source_.reset();
        io_ = nullptr;
        return QStringLiteral("the audio source refused to start (error %1)")
            .arg(static_cast<int>(error));
    }
    connect(io_, &QIODevice::readyRead, this, &AudioCaptureWorker::readAvailable);
    connect(source_.get(), &QAudioSource::stateChanged, this, [this](QAudio::State state) {
        // A server that goes away stops the source with a fatal error.
        if (state == QAudio::StoppedState && source_ && source_->error() != QAudio::NoError)
            emit failed();
    });
    return std::nullopt;
}

void AudioCaptureWorker::stop()
{
    if (!source_) return;
    if (io_) disconnect(io_, nullptr, this, nullptr);
    disconnect(source_.get(), nullptr, this, nullptr);
    source_->stop();
    source_.reset();
    io_ = nullptr;
    tap_ = nullptr;
}

bool AudioCaptureWorker::isRunning() const
{
    return source_ && source_->state() != QAudio::StoppedState;
}

std::optional<QAudioFormat> AudioCaptureWorker::format() const
{
    if (!source_) return std::nullopt;
    return source_->format();
}

void AudioCaptureWorker::readAvailable()
{
    if (!io_ || bytesPerFrame_ <= 0 || buffer_.empty()) return;
    // Qt's PulseAudio device reports no bytesAvailable(); read until it has nothing left.
    const qint64 capacity = static_cast<qint64>(buffer_.size())
        - static_cast<qint64>(buffer_.size()) % bytesPerFrame_;
    for (;;) {
        const qint64 read = io_->read(reinterpret_cast<char*>(buffer_.data()), capacity);
        // Empty deliveries are normal at start-up.
        if (read < bytesPerFrame_) return;
        AudioBufferView view;
        view.data = buffer_.data();
        view.frameCount = static_cast<std::size_t>(read / bytesPerFrame_);
        view.channelCount = channelCount_;
        view.format = AudioBufferView::SampleFormat::float32;
        if (tap_) tap_(view);
        if (read < capacity) return;
    }
}

} // namespace ostrel
