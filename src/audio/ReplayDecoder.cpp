#include "audio/ReplayDecoder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "audio/FFmpegError.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace ostrel {

struct ReplayDecoder::Impl {
    AVFormatContext* format = nullptr;
    AVCodecContext* codec = nullptr;
    const AVCodec* decoder = nullptr;
    AVPacket* packet = nullptr;
    AVFrame* frame = nullptr;
    int streamIndex = -1;
    int sampleRate = 0;

    // Byte position and first decoded sample of every packet, in file order.
    std::vector<std::int64_t> packetPositions;
    std::vector<std::int64_t> packetStarts;
    std::int64_t length = 0;

    // Decoded samples not yet handed out.
    std::vector<float> pending;
    std::size_t pendingOffset = 0;
    // Decoded samples still to drop before the sample a seek asked for.
    std::int64_t discard = 0;
    bool inputEnded = false;
    bool drained = false;
    std::string error;

    ~Impl()
    {
        av_frame_free(&frame);
        av_packet_free(&packet);
        avcodec_free_context(&codec);
        avformat_close_input(&format);
    }

    std::string openCodec()
    {
        avcodec_free_context(&codec);
        codec = avcodec_alloc_context3(decoder);
        if (!codec) return ffmpegErrorText(AVERROR(ENOMEM));
        int result = avcodec_parameters_to_context(codec, format->streams[streamIndex]->codecpar);
        if (result >= 0) result = avcodec_open2(codec, decoder, nullptr);
        return result < 0 ? ffmpegErrorText(result) : std::string();
    }

    std::string index()
    {
        const AVCodecParameters* parameters = format->streams[streamIndex]->codecpar;
        // AAC codes 1024 samples a packet; the ADTS demuxer may not say so before decoding.
        const std::int64_t packetLength
            = parameters->frame_size > 0 ? parameters->frame_size : 1024;
        while (true) {
            const int result = av_read_frame(format, packet);
            if (result == AVERROR_EOF) break;
            if (result < 0) return ffmpegErrorText(result);
            if (packet->stream_index == streamIndex && packet->pos >= 0) {
                packetPositions.push_back(packet->pos);
                packetStarts.push_back(length);
                length += packetLength;
            }
            av_packet_unref(packet);
        }
        return {};
    }

    // Appends the decoded samples of channel 0 to `pending`.
    bool takeFrame()
    {
        const auto count = static_cast<std::size_t>(frame->nb_samples);
        const auto sampleFormat = static_cast<AVSampleFormat>(frame->format);
        const std::size_t start = pending.size();
        pending.resize(start + count);
        if (sampleFormat == AV_SAMPLE_FMT_FLTP) {
            std::memcpy(pending.data() + start, frame->extended_data[0], count * sizeof(float));
        } else if (sampleFormat == AV_SAMPLE_FMT_FLT) {
            const auto* interleaved = reinterpret_cast<const float*>(frame->extended_data[0]);
            const auto channels = static_cast<std::size_t>(frame->ch_layout.nb_channels);
            for (std::size_t i = 0; i < count; ++i)
                pending[start + i] = interleaved[i * channels];
        } else {
            error = "unexpected sample format";
            pending.resize(start);
            return false;
        }
        av_frame_unref(frame);
        return true;
    }

    // Decodes until samples are pending or the stream has ended; false at the end or on an
    // error.
    bool decodeMore()
    {
        while (error.empty() && !drained) {
            const int received = avcodec_receive_frame(codec, frame);
            if (received == 0) return takeFrame();
            if (received == AVERROR_EOF) {
                drained = true;
                return false;
            }
            if (received != AVERROR(EAGAIN)) {
                error = ffmpegErrorText(received);
                return false;
            }
            if (inputEnded) {
                avcodec_send_packet(codec, nullptr);
                continue;
            }
            const int read = av_read_frame(format, packet);
            if (read == AVERROR_EOF) {
                inputEnded = true;
                avcodec_send_packet(codec, nullptr);
                continue;
            }
            if (read < 0) {
                error = ffmpegErrorText(read);
                return false;
            }
            if (packet->stream_index == streamIndex) {
                const int sent = avcodec_send_packet(codec, packet);
                // A corrupt packet is left out, as FFmpeg's own tools do.
                if (sent < 0 && sent != AVERROR_INVALIDDATA && sent != AVERROR(EAGAIN))
                    error = ffmpegErrorText(sent);
            }
            av_packet_unref(packet);
        }
        return false;
    }
};

ReplayDecoder::ReplayDecoder(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) { }

ReplayDecoder::~ReplayDecoder() = default;

ReplayDecoder::OpenResult ReplayDecoder::open(const std::string& path)
{
    auto impl = std::make_unique<Impl>();
    int result = avformat_open_input(&impl->format, path.c_str(), nullptr, nullptr);
    if (result < 0) return ffmpegErrorText(result);
    result = avformat_find_stream_info(impl->format, nullptr);
    if (result < 0) return ffmpegErrorText(result);
    const AVCodec* decoder = nullptr;
    result = av_find_best_stream(impl->format, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (result < 0) return ffmpegErrorText(result);
    impl->streamIndex = result;
    impl->decoder = decoder;
    impl->packet = av_packet_alloc();
    impl->frame = av_frame_alloc();
    if (!impl->packet || !impl->frame) return ffmpegErrorText(AVERROR(ENOMEM));
    if (std::string failure = impl->openCodec(); !failure.empty()) return failure;
    impl->sampleRate = impl->codec->sample_rate;
    if (impl->sampleRate <= 0) return std::string("no sample rate");
    if (std::string indexError = impl->index(); !indexError.empty()) return indexError;
    if (impl->packetPositions.empty()) return std::string("no audio in the file");

    auto replay = std::unique_ptr<ReplayDecoder>(new ReplayDecoder(std::move(impl)));
    if (!replay->seek(0)) return replay->error().empty() ? "can't seek" : replay->error();
    return replay;
}

int ReplayDecoder::sampleRate() const noexcept
{
    return impl_->sampleRate;
}

std::int64_t ReplayDecoder::length() const noexcept
{
    return impl_->length;
}

bool ReplayDecoder::seek(std::int64_t frame)
{
    Impl& d = *impl_;
    if (frame < 0 || frame >= d.length) return false;
    const auto packet = static_cast<std::size_t>(
        std::upper_bound(d.packetStarts.begin(), d.packetStarts.end(), frame)
        - d.packetStarts.begin() - 1);
    // One packet early: the first packet after a flush lacks its overlap with the one before,
    // so its samples are decoded and dropped.
    const std::size_t first = packet > 0 ? packet - 1 : 0;
    const int result
        = av_seek_frame(d.format, d.streamIndex, d.packetPositions[first], AVSEEK_FLAG_BYTE);
    if (result < 0) {
        d.error = ffmpegErrorText(result);
        return false;
    }
    // A fresh decoder rather than a flushed one: a flush keeps the last window shape, which
    // changes the first packet's samples, and from the file's start those are heard.
    if (const std::string failure = d.openCodec(); !failure.empty()) {
        d.error = failure;
        return false;
    }
    d.pending.clear();
    d.pendingOffset = 0;
    d.discard = frame - d.packetStarts[first];
    d.inputEnded = false;
    d.drained = false;
    d.error.clear();
    return true;
}

std::size_t ReplayDecoder::read(float* destination, std::size_t maxFrames)
{
    Impl& d = *impl_;
    std::size_t written = 0;
    while (written < maxFrames) {
        if (d.pendingOffset == d.pending.size()) {
            d.pending.clear();
            d.pendingOffset = 0;
            if (!d.decodeMore()) break;
        }
        const std::size_t available = d.pending.size() - d.pendingOffset;
        if (d.discard > 0) {
            const auto dropped = std::min(available, static_cast<std::size_t>(d.discard));
            d.pendingOffset += dropped;
            d.discard -= static_cast<std::int64_t>(dropped);
            continue;
        }
        const std::size_t taken = std::min(available, maxFrames - written);
        std::memcpy(
            destination + written, d.pending.data() + d.pendingOffset, taken * sizeof(float));
        d.pendingOffset += taken;
        written += taken;
    }
    return written;
}

const std::string& ReplayDecoder::error() const noexcept
{
    return impl_->error;
}

} // namespace ostrel
