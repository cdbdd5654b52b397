#include "audio/AudioFileDecoder.h"
#include "audio/FFmpegError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/log.h>
#include <libswresample/swresample.h>
}

namespace ostrel {

namespace {

enum class Step { frame, end, failed };

} // namespace

struct AudioFileDecoder::Impl {
    AVFormatContext* format = nullptr;
    AVCodecContext* codec = nullptr;
    SwrContext* converter = nullptr;
    AVPacket* packet = nullptr;
    AVFrame* frame = nullptr;
    int streamIndex = -1;

    int sampleRate = 0;
    int channels = 0;
    std::optional<double> duration;
    std::string codecName;

    // What the converter was set up for; a decoder may change its sample format between frames.
    AVSampleFormat converterFormat = AV_SAMPLE_FMT_NONE;
    AVChannelLayout converterLayout {};

    // Converted frames not yet handed out; `pendingOffset` counts floats already taken.
    std::vector<float> pending;
    std::size_t pendingOffset = 0;
    std::int64_t framesDecoded = 0;

    bool inputEnded = false;
    bool decoderDrained = false;
    std::string error;
    std::int64_t skippedPackets = 0;

    ~Impl()
    {
        av_channel_layout_uninit(&converterLayout);
        swr_free(&converter);
        av_frame_free(&frame);
        av_packet_free(&packet);
        avcodec_free_context(&codec);
        avformat_close_input(&format);
    }

    Step fail(std::string message)
    {
        error = std::move(message);
        return Step::failed;
    }

    bool prepareConverter(AVFrame& source)
    {
        const auto sourceFormat = static_cast<AVSampleFormat>(source.format);
        if (converter && sourceFormat == converterFormat
            && av_channel_layout_compare(&source.ch_layout, &converterLayout) == 0)
            return true;

        swr_free(&converter);
        av_channel_layout_uninit(&converterLayout);
        // Same layout on both sides: only the sample format changes, channels are never mixed.
        if (swr_alloc_set_opts2(&converter, &source.ch_layout, AV_SAMPLE_FMT_FLT,
                source.sample_rate, &source.ch_layout, sourceFormat, source.sample_rate, 0, nullptr)
                < 0
            || swr_init(converter) < 0) {
            swr_free(&converter);
            return false;
        }
        converterFormat = sourceFormat;
        av_channel_layout_copy(&converterLayout, &source.ch_layout);
        return true;
    }

    Step convert()
    {
        if (frame->ch_layout.nb_channels != channels || frame->sample_rate != sampleRate)
            return fail("the audio changes its sample rate or channel count part way through");
        if (!prepareConverter(*frame)) return fail("cannot convert the decoded samples to float");

        const int capacity = swr_get_out_samples(converter, frame->nb_samples);
        if (capacity < 0) return fail(ffmpegErrorText(capacity));
        // Keep what has not been handed out yet, drop the rest.
        pending.erase(
            pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(pendingOffset));
        pendingOffset = 0;
        const std::size_t start = pending.size();
        pending.resize(
            start + static_cast<std::size_t>(capacity) * static_cast<std::size_t>(channels));
        auto* out = reinterpret_cast<std::uint8_t*>(pending.data() + start);
        const int converted = swr_convert(converter, &out, capacity,
            const_cast<const std::uint8_t**>(frame->extended_data), frame->nb_samples);
        if (converted < 0) return fail(ffmpegErrorText(converted));
        pending.resize(
            start + static_cast<std::size_t>(converted) * static_cast<std::size_t>(channels));
        framesDecoded += converted;
        return Step::frame;
    }

    // Decodes one more frame into `pending`.
    Step decodeNext()
    {
        if (!error.empty()) return Step::failed;
        while (!decoderDrained) {
            int result = avcodec_receive_frame(codec, frame);
            if (result == 0) {
                if (channels == 0) {
                    // The first frame is the truth; container headers are sometimes not.
                    sampleRate = frame->sample_rate;
                    channels = frame->ch_layout.nb_channels;
                }
                const Step step = convert();
                av_frame_unref(frame);
                return step;
            }
            if (result == AVERROR_EOF) {
                decoderDrained = true;
                break;
            }
            if (result == AVERROR_INVALIDDATA) {
                ++skippedPackets;
                continue;
            }
            if (result != AVERROR(EAGAIN)) return fail(ffmpegErrorText(result));
            if (inputEnded) {
                decoderDrained = true;
                break;
            }

            result = av_read_frame(format, packet);
            if (result == AVERROR_EOF) {
                inputEnded = true;
                avcodec_send_packet(codec, nullptr);
                continue;
            }
            if (result < 0) return fail(ffmpegErrorText(result));
            if (packet->stream_index != streamIndex) {
                av_packet_unref(packet);
                continue;
            }
            result = avcodec_send_packet(codec, packet);
            av_packet_unref(packet);
            if (result == AVERROR_INVALIDDATA) {
                ++skippedPackets;
                continue;
            }
            if (result < 0 && result != AVERROR(EAGAIN)) return fail(ffmpegErrorText(result));
        }
        return Step::end;
    }
};

AudioFileDecoder::AudioFileDecoder(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) { }

AudioFileDecoder::~AudioFileDecoder() = default;

AudioFileDecoder::OpenResult AudioFileDecoder::open(const std::string& path)
{
    // The protocol prefix keeps a colon in a file name from being read as a protocol.
    return openUrl("file:" + path);
}

AudioFileDecoder::OpenResult AudioFileDecoder::openStandardInput()
{
    return openUrl("pipe:0");
}

void AudioFileDecoder::quietLibraryLog()
{
    av_log_set_level(AV_LOG_QUIET);
}

AudioFileDecoder::OpenResult AudioFileDecoder::openUrl(const std::string& url)
{
    auto impl = std::make_unique<Impl>();
    int result = avformat_open_input(&impl->format, url.c_str(), nullptr, nullptr);
    if (result < 0) return ffmpegErrorText(result);
    result = avformat_find_stream_info(impl->format, nullptr);
    if (result < 0) return ffmpegErrorText(result);

    const AVCodec* decoder = nullptr;
    result = av_find_best_stream(impl->format, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (result == AVERROR_STREAM_NOT_FOUND) return std::string("no audio stream");
    if (result == AVERROR_DECODER_NOT_FOUND) return std::string("no decoder for its audio format");
    if (result < 0) return ffmpegErrorText(result);
    impl->streamIndex = result;
    const AVStream* stream = impl->format->streams[result];

    impl->codec = avcodec_alloc_context3(decoder);
    impl->packet = av_packet_alloc();
    impl->frame = av_frame_alloc();
    if (!impl->codec || !impl->packet || !impl->frame) return ffmpegErrorText(AVERROR(ENOMEM));
    result = avcodec_parameters_to_context(impl->codec, stream->codecpar);
    if (result < 0) return ffmpegErrorText(result);
    result = avcodec_open2(impl->codec, decoder, nullptr);
    if (result < 0) return ffmpegErrorText(result);
    impl->codecName = decoder->name;

    if (impl->format->duration != AV_NOPTS_VALUE && impl->format->duration > 0) {
        impl->duration = static_cast<double>(impl->format->duration) / AV_TIME_BASE;
    } else if (stream->duration != AV_NOPTS_VALUE && stream->duration > 0) {
        impl->duration = static_cast<double>(stream->duration) * av_q2d(stream->time_base);
    }

    // Decoding the first frame here turns a file that merely probes as audio into an error now,
    // not after a caller has started writing.
    if (impl->decodeNext() == Step::failed) return impl->error;
    if (impl->framesDecoded == 0) {
        if (impl->skippedPackets > 0) return ffmpegErrorText(AVERROR_INVALIDDATA);
        // A file with no samples at all is valid; its header is all there is to go by.
        impl->sampleRate = impl->codec->sample_rate;
        impl->channels = impl->codec->ch_layout.nb_channels;
    }
    if (impl->sampleRate <= 0 || impl->channels <= 0)
        return std::string("no sample rate or channel count");

    return std::unique_ptr<AudioFileDecoder>(new AudioFileDecoder(std::move(impl)));
}

int AudioFileDecoder::sampleRate() const noexcept
{
    return impl_->sampleRate;
}

int AudioFileDecoder::channelCount() const noexcept
{
    return impl_->channels;
}

std::optional<double> AudioFileDecoder::durationSeconds() const noexcept
{
    return impl_->duration;
}

const std::string& AudioFileDecoder::codecName() const noexcept
{
    return impl_->codecName;
}

const std::string& AudioFileDecoder::error() const noexcept
{
    return impl_->error;
}

std::int64_t AudioFileDecoder::skippedPacketCount() const noexcept
{
    return impl_->skippedPackets;
}

std::size_t AudioFileDecoder::read(std::vector<float>& interleaved, std::size_t maxFrames)
{
    interleaved.clear();
    const auto channels = static_cast<std::size_t>(impl_->channels);
    const std::size_t wanted = maxFrames * channels;
    while (interleaved.size() < wanted) {
        const std::size_t available = impl_->pending.size() - impl_->pendingOffset;
        if (available == 0) {
            if (impl_->decodeNext() != Step::frame) break;
            continue;
        }
        const std::size_t take = std::min(available, wanted - interleaved.size());
        const auto first
            = impl_->pending.begin() + static_cast<std::ptrdiff_t>(impl_->pendingOffset);
        interleaved.insert(interleaved.end(), first, first + static_cast<std::ptrdiff_t>(take));
        impl_->pendingOffset += take;
    }
    return interleaved.size() / channels;
}

} // namespace ostrel
