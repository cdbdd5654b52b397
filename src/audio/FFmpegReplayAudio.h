#pragma once

// The sound of a recorded show on the default output: "audio.aac" decoded by FFmpeg and played
// by a Qt audio sink. Its clock is what the sink has played, so the meter follows what is heard.
#include <cstdint>
#include <memory>
#include <optional>
#include <variant>

#include <QAudioDevice>
#include <QAudioSink>
#include <QString>

#include "audio/ReplayDecoder.h"
#include "audio/ReplayStream.h"
#include "replay/ReplayAudio.h"

namespace ostrel {

class FFmpegReplayAudio : public ReplayAudio {
public:
    // The encoder delay our AAC encoder writes ahead of the first real sample, at every rate.
    static constexpr std::int64_t primingFrames = 1024;

    // Either the sound, or why the file can't be read (FFmpeg's words).
    using OpenResult = std::variant<std::unique_ptr<FFmpegReplayAudio>, QString>;
    // Plays on `output`, or on the default output of the moment each time it starts.
    static OpenResult open(const QString& path, std::optional<QAudioDevice> output = std::nullopt);

    ~FFmpegReplayAudio() override;

    double sampleRate() const { return sampleRate_; }
    double duration() const override;
    bool play(double seconds) override;
    void stop() override;
    std::optional<double> currentSeconds() const override;
    float volume() const override { return volume_; }
    void setVolume(float volume) override;

private:
    FFmpegReplayAudio(std::unique_ptr<ReplayDecoder> decoder, std::optional<QAudioDevice> output);

    std::unique_ptr<ReplayDecoder> decoder_;
    std::optional<QAudioDevice> output_;
    double sampleRate_ = 0.0;
    std::unique_ptr<ReplayStream> stream_;
    std::unique_ptr<QAudioSink> sink_;
    std::int64_t startFrame_ = 0;
    float volume_ = 1.0F;
};

} // namespace ostrel
