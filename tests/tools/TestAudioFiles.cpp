#include "tools/TestAudioFiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <fstream>
#include <numbers>
#include <stdexcept>

#include <gtest/gtest.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

namespace ostrel::testing {

namespace {

std::string errorText(int code)
{
    std::array<char, AV_ERROR_MAX_STRING_SIZE> buffer {};
    av_strerror(code, buffer.data(), buffer.size());
    return buffer.data();
}

void put16(std::ofstream& out, std::uint16_t value)
{
    const std::array<char, 2> bytes {
        static_cast<char>(value & 0xff), static_cast<char>(value >> 8)};
    out.write(bytes.data(), bytes.size());
}

void put32(std::ofstream& out, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        out.put(static_cast<char>((value >> shift) & 0xff));
}

// Owns everything one encoding run allocates, whichever way it ends.
struct Encoding {
    AVFormatContext* format = nullptr;
    AVCodecContext* codec = nullptr;
    SwrContext* converter = nullptr;
    AVFrame* frame = nullptr;
    AVPacket* packet = nullptr;

    ~Encoding()
    {
        av_packet_free(&packet);
        av_frame_free(&frame);
        swr_free(&converter);
        avcodec_free_context(&codec);
        if (format) {
            if (format->pb) avio_closep(&format->pb);
            avformat_free_context(format);
        }
    }

    int drain()
    {
        for (;;) {
            int result = avcodec_receive_packet(codec, packet);
            if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return 0;
            if (result < 0) return result;
            av_packet_rescale_ts(packet, codec->time_base, format->streams[0]->time_base);
            packet->stream_index = 0;
            result = av_interleaved_write_frame(format, packet);
            if (result < 0) return result;
        }
    }
};

} // namespace

std::filesystem::path fixturePath(const std::string& name)
{
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string prefix = test ? std::string(test->test_suite_name()) + "." + test->name() : "none";
    std::replace(prefix.begin(), prefix.end(), '/', '_');
    const std::filesystem::path directory(OSTREL_TOOLS_FIXTURE_DIR);
    std::filesystem::create_directories(directory);
    return directory / (prefix + "-" + name);
}

std::vector<float> sine(double frequency, double amplitude, int sampleRate, std::size_t frames)
{
    std::vector<float> samples(frames);
    for (std::size_t index = 0; index < frames; ++index) {
        const double phase = 2.0 * std::numbers::pi * frequency * static_cast<double>(index)
            / static_cast<double>(sampleRate);
        samples[index] = static_cast<float>(amplitude * std::sin(phase));
    }
    return samples;
}

std::vector<float> interleave(const std::vector<std::vector<float>>& channels)
{
    const std::size_t frames = channels.front().size();
    std::vector<float> result(frames * channels.size());
    for (std::size_t frame = 0; frame < frames; ++frame)
        for (std::size_t channel = 0; channel < channels.size(); ++channel)
            result[frame * channels.size() + channel] = channels[channel][frame];
    return result;
}

void writeWav(const std::filesystem::path& path, std::span<const float> interleaved, int channels,
    int sampleRate, WavEncoding encoding)
{
    const bool isFloat = encoding == WavEncoding::float32;
    const std::uint16_t bytesPerSample = isFloat ? 4 : 2;
    const auto dataBytes = static_cast<std::uint32_t>(interleaved.size() * bytesPerSample);
    const auto blockAlign = static_cast<std::uint16_t>(channels * bytesPerSample);

    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) throw std::runtime_error("cannot write " + path.string());
    out.write("RIFF", 4);
    put32(out, 36 + dataBytes);
    out.write("WAVEfmt ", 8);
    put32(out, 16);
    put16(out, isFloat ? 3 : 1); // IEEE float or integer PCM
    put16(out, static_cast<std::uint16_t>(channels));
    put32(out, static_cast<std::uint32_t>(sampleRate));
    put32(out, static_cast<std::uint32_t>(sampleRate) * blockAlign);
    put16(out, blockAlign);
    put16(out, static_cast<std::uint16_t>(bytesPerSample * 8));
    out.write("data", 4);
    put32(out, dataBytes);
    for (float sample : interleaved) {
        if (isFloat) {
            std::uint32_t bits = 0;
            static_assert(sizeof bits == sizeof sample);
            std::memcpy(&bits, &sample, sizeof bits);
            put32(out, bits);
        } else {
            const double scaled
                = std::clamp(std::round(static_cast<double>(sample) * 32768.0), -32768.0, 32767.0);
            put16(out, static_cast<std::uint16_t>(static_cast<std::int16_t>(scaled)));
        }
    }
    if (!out) throw std::runtime_error("cannot write " + path.string());
}

bool encoderAvailable(const std::string& encoderName)
{
    return avcodec_find_encoder_by_name(encoderName.c_str()) != nullptr;
}

std::optional<std::string> encodeFile(const std::filesystem::path& path,
    const std::string& muxerName, const std::string& encoderName,
    std::span<const float> interleaved, int channels, int sampleRate, std::int64_t bitRate)
{
    const AVCodec* encoder = avcodec_find_encoder_by_name(encoderName.c_str());
    if (!encoder) return "no encoder " + encoderName;

    Encoding run;
    int result
        = avformat_alloc_output_context2(&run.format, nullptr, muxerName.c_str(), path.c_str());
    if (result < 0) return "muxer " + muxerName + ": " + errorText(result);
    AVStream* stream = avformat_new_stream(run.format, nullptr);
    run.codec = avcodec_alloc_context3(encoder);
    run.frame = av_frame_alloc();
    run.packet = av_packet_alloc();
    if (!stream || !run.codec || !run.frame || !run.packet) return std::string("out of memory");

    run.codec->sample_rate = sampleRate;
    av_channel_layout_default(&run.codec->ch_layout, channels);
    run.codec->sample_fmt = encoder->sample_fmts ? encoder->sample_fmts[0] : AV_SAMPLE_FMT_FLTP;
    run.codec->time_base = AVRational {1, sampleRate};
    if (bitRate > 0) run.codec->bit_rate = bitRate;
    if (run.format->oformat->flags & AVFMT_GLOBALHEADER)
        run.codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    result = avcodec_open2(run.codec, encoder, nullptr);
    if (result < 0) return "encoder " + encoderName + ": " + errorText(result);
    avcodec_parameters_from_context(stream->codecpar, run.codec);
    stream->time_base = run.codec->time_base;

    result = avio_open(&run.format->pb, path.c_str(), AVIO_FLAG_WRITE);
    if (result < 0) return "open " + path.string() + ": " + errorText(result);
    result = avformat_write_header(run.format, nullptr);
    if (result < 0) return "header: " + errorText(result);

    result = swr_alloc_set_opts2(&run.converter, &run.codec->ch_layout, run.codec->sample_fmt,
        sampleRate, &run.codec->ch_layout, AV_SAMPLE_FMT_FLT, sampleRate, 0, nullptr);
    if (result < 0 || swr_init(run.converter) < 0) return std::string("converter");

    const int frameSize = run.codec->frame_size > 0 ? run.codec->frame_size : 1024;
    const bool shortLastFrame = encoder->capabilities & AV_CODEC_CAP_SMALL_LAST_FRAME;
    const auto totalFrames = static_cast<std::int64_t>(interleaved.size()) / channels;
    for (std::int64_t position = 0; position < totalFrames; position += frameSize) {
        const auto available
            = static_cast<int>(std::min<std::int64_t>(frameSize, totalFrames - position));
        const int count = shortLastFrame ? available : frameSize;
        av_frame_unref(run.frame);
        run.frame->nb_samples = count;
        run.frame->format = run.codec->sample_fmt;
        run.frame->sample_rate = sampleRate;
        av_channel_layout_copy(&run.frame->ch_layout, &run.codec->ch_layout);
        result = av_frame_get_buffer(run.frame, 0);
        if (result < 0) return "frame: " + errorText(result);

        std::vector<float> source(static_cast<std::size_t>(count * channels), 0.0f);
        std::copy_n(
            interleaved.begin() + position * channels, available * channels, source.begin());
        const auto* input = reinterpret_cast<const std::uint8_t*>(source.data());
        result = swr_convert(run.converter, run.frame->data, count, &input, count);
        if (result < 0) return "convert: " + errorText(result);
        run.frame->pts = position;
        result = avcodec_send_frame(run.codec, run.frame);
        if (result < 0) return "encode: " + errorText(result);
        if ((result = run.drain()) < 0) return "write: " + errorText(result);
    }
    avcodec_send_frame(run.codec, nullptr);
    if ((result = run.drain()) < 0) return "write: " + errorText(result);
    result = av_write_trailer(run.format);
    if (result < 0) return "trailer: " + errorText(result);
    return std::nullopt;
}

double sineLevel(double amplitude)
{
    return 10.0 * std::log10(amplitude * amplitude / 2.0);
}

} // namespace ostrel::testing
