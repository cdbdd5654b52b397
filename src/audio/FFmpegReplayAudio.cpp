#include "audio/FFmpegReplayAudio.h"

#include <algorithm>
#include <cmath>

#include <QMediaDevices>

namespace ostrel {

FFmpegReplayAudio::OpenResult FFmpegReplayAudio::open(
    const QString& path, std::optional<QAudioDevice> output)
{
    auto decoded = ReplayDecoder::open(path.toStdString());
    if (auto* message = std::get_if<std::string>(&decoded)) return QString::fromStdString(*message);
    return std::unique_ptr<FFmpegReplayAudio>(new FFmpegReplayAudio(
        std::move(std::get<std::unique_ptr<ReplayDecoder>>(decoded)), output));
}

FFmpegReplayAudio::FFmpegReplayAudio(
    std::unique_ptr<ReplayDecoder> decoder, std::optional<QAudioDevice> output)
    : decoder_(std::move(decoder)),
      output_(std::move(output)),
      sampleRate_(static_cast<double>(decoder_->sampleRate()))
{
}

FFmpegReplayAudio::~FFmpegReplayAudio()
{
    stop();
}

double FFmpegReplayAudio::duration() const
{
    return std::max(0.0, static_cast<double>(decoder_->length() - primingFrames) / sampleRate_);
}

bool FFmpegReplayAudio::play(double seconds)
{
    stop();
    startFrame_ = static_cast<std::int64_t>(std::trunc(seconds * sampleRate_)) + primingFrames;
    if (startFrame_ >= decoder_->length()) return true;
    if (!decoder_->seek(startFrame_)) return false;

    QAudioFormat format;
    format.setSampleRate(decoder_->sampleRate());
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Float);
    const QAudioDevice output = output_.value_or(QMediaDevices::defaultAudioOutput());
    if (output.isNull()) return false;
    // A new sink for each start: its played-time count then starts at the new position.
    stream_ = std::make_unique<ReplayStream>(*decoder_);
    stream_->open(QIODevice::ReadOnly);
    sink_ = std::make_unique<QAudioSink>(output, format);
    sink_->setVolume(volume_);
    sink_->start(stream_.get());
    if (sink_->error() != QAudio::NoError) {
        stop();
        return false;
    }
    return true;
}

void FFmpegReplayAudio::stop()
{
    if (sink_) sink_->stop();
    sink_.reset();
    stream_.reset();
}

std::optional<double> FFmpegReplayAudio::currentSeconds() const
{
    if (!sink_ || sink_->state() != QAudio::ActiveState) return std::nullopt;
    const qint64 played = sink_->processedUSecs();
    if (played <= 0) return std::nullopt;
    return static_cast<double>(startFrame_ - primingFrames) / sampleRate_
        + static_cast<double>(played) / 1e6;
}

void FFmpegReplayAudio::setVolume(float volume)
{
    volume_ = volume;
    if (sink_) sink_->setVolume(volume);
}

} // namespace ostrel
