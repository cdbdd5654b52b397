#include "recording/AacFileWriter.h"
#include "audio/FFmpegError.h"

#include <array>
#include <cerrno>
#include <limits>

#include <QFile>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/channel_layout.h>
#include <libavutil/error.h>
}

namespace ostrel {

struct AacFileWriter::Impl {
    AVFormatContext* format = nullptr;
    AVCodecContext* codec = nullptr;
    AVStream* stream = nullptr;
    AVAudioFifo* fifo = nullptr;
    AVFrame* frame = nullptr;
    AVPacket* packet = nullptr;
    std::int64_t nextPts = 0;
    bool headerWritten = false;

    ~Impl()
    {
        if (format != nullptr && format->pb != nullptr) avio_closep(&format->pb);
        avformat_free_context(format);
        avcodec_free_context(&codec);
        if (fifo != nullptr) av_audio_fifo_free(fifo);
        av_frame_free(&frame);
        av_packet_free(&packet);
    }

    // Hands every packet the encoder has ready to the muxer.
    int writePackets()
    {
        for (;;) {
            int result = avcodec_receive_packet(codec, packet);
            if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return 0;
            if (result < 0) return result;
            av_packet_rescale_ts(packet, codec->time_base, stream->time_base);
            packet->stream_index = stream->index;
            result = av_write_frame(format, packet);
            av_packet_unref(packet);
            if (result < 0) return result;
        }
    }

    int encodeFromFifo(int count)
    {
        int result = av_frame_make_writable(frame);
        if (result < 0) return result;
        frame->nb_samples = count;
        if (av_audio_fifo_read(fifo, reinterpret_cast<void**>(frame->data), count) != count) {
            return AVERROR_BUG;
        }
        frame->pts = nextPts;
        nextPts += count;
        result = avcodec_send_frame(codec, frame);
        if (result < 0) return result;
        return writePackets();
    }

    // Without this the muxer's buffer would keep seconds of sound from the disk.
    int flushToDisk()
    {
        avio_flush(format->pb);
        return format->pb->error;
    }
};

AacFileWriter::OpenResult AacFileWriter::open(const QString& path, int sampleRate)
{
    auto impl = std::make_unique<Impl>();
    const QByteArray fileName = QFile::encodeName(path);
    int result
        = avformat_alloc_output_context2(&impl->format, nullptr, "adts", fileName.constData());
    if (result < 0) return ffmpegErrorMessage(result);

    const AVCodec* encoder = avcodec_find_encoder_by_name("aac");
    if (encoder == nullptr) return QStringLiteral("FFmpeg has no AAC encoder.");
    impl->codec = avcodec_alloc_context3(encoder);
    impl->stream = avformat_new_stream(impl->format, nullptr);
    impl->packet = av_packet_alloc();
    impl->frame = av_frame_alloc();
    if (impl->codec == nullptr || impl->stream == nullptr || impl->packet == nullptr
        || impl->frame == nullptr) {
        return ffmpegErrorMessage(AVERROR(ENOMEM));
    }
    AVCodecContext& codec = *impl->codec;
    codec.sample_fmt = AV_SAMPLE_FMT_FLTP; // the only format the native encoder takes
    codec.sample_rate = sampleRate;
    codec.bit_rate = bitRate;
    av_channel_layout_default(&codec.ch_layout, 1);
    codec.time_base = AVRational {1, sampleRate};
    if (impl->format->oformat->flags & AVFMT_GLOBALHEADER) {
        codec.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    result = avcodec_open2(impl->codec, encoder, nullptr);
    if (result < 0) return ffmpegErrorMessage(result);
    result = avcodec_parameters_from_context(impl->stream->codecpar, impl->codec);
    if (result < 0) return ffmpegErrorMessage(result);
    impl->stream->time_base = codec.time_base;

    result = avio_open(&impl->format->pb, fileName.constData(), AVIO_FLAG_WRITE);
    if (result < 0) return ffmpegErrorMessage(result);
    result = avformat_write_header(impl->format, nullptr);
    if (result < 0) return ffmpegErrorMessage(result);
    impl->headerWritten = true;

    impl->fifo = av_audio_fifo_alloc(codec.sample_fmt, 1, 4 * codec.frame_size);
    if (impl->fifo == nullptr) return ffmpegErrorMessage(AVERROR(ENOMEM));
    AVFrame& frame = *impl->frame;
    frame.format = codec.sample_fmt;
    frame.sample_rate = sampleRate;
    frame.nb_samples = codec.frame_size;
    result = av_channel_layout_copy(&frame.ch_layout, &codec.ch_layout);
    if (result >= 0) result = av_frame_get_buffer(impl->frame, 0);
    if (result < 0) return ffmpegErrorMessage(result);

    return std::unique_ptr<AacFileWriter>(new AacFileWriter(std::move(impl)));
}

AacFileWriter::AacFileWriter(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) { }

AacFileWriter::~AacFileWriter() = default;

int AacFileWriter::sampleRate() const noexcept
{
    return impl_->codec->sample_rate;
}

int AacFileWriter::encoderDelay() const noexcept
{
    return impl_->codec->initial_padding;
}

std::optional<QString> AacFileWriter::write(std::span<const float> samples)
{
    if (samples.empty()) return std::nullopt;
    if (samples.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return QStringLiteral("The audio block is too large to encode.");
    }
    void* planes[1] = {const_cast<float*>(samples.data())};
    const int count = static_cast<int>(samples.size());
    if (av_audio_fifo_write(impl_->fifo, planes, count) != count) {
        return ffmpegErrorMessage(AVERROR(ENOMEM));
    }
    const int frameSize = impl_->codec->frame_size;
    bool encoded = false;
    while (av_audio_fifo_size(impl_->fifo) >= frameSize) {
        if (const int result = impl_->encodeFromFifo(frameSize); result < 0)
            return ffmpegErrorMessage(result);
        encoded = true;
    }
    if (encoded) {
        if (const int result = impl_->flushToDisk(); result < 0) return ffmpegErrorMessage(result);
    }
    return std::nullopt;
}

std::optional<QString> AacFileWriter::close()
{
    if (impl_->format->pb == nullptr) return std::nullopt;
    int result = 0;
    // The native encoder takes a short last frame, so the end of the show is not cut off.
    if (const int rest = av_audio_fifo_size(impl_->fifo); rest > 0) {
        result = impl_->encodeFromFifo(rest);
    }
    if (result >= 0) result = avcodec_send_frame(impl_->codec, nullptr);
    if (result >= 0) result = impl_->writePackets();
    if (result >= 0 && impl_->headerWritten) result = av_write_trailer(impl_->format);
    if (result >= 0) result = impl_->flushToDisk();
    const int closed = avio_closep(&impl_->format->pb);
    if (result >= 0) result = closed;
    if (result < 0) return ffmpegErrorMessage(result);
    return std::nullopt;
}

} // namespace ostrel
