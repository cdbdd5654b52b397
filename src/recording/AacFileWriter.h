#pragma once

// Writes the show's sound as "audio.aac": mono AAC at 64 kbit/s in ADTS frames. ADTS needs no
// index or trailer, so a file cut short by a crash or a full disk still plays up to its last
// whole frame. FFmpeg stays behind this class.
#include <memory>
#include <optional>
#include <span>
#include <variant>

#include <QString>

namespace ostrel {

class AacFileWriter {
public:
    static constexpr int bitRate = 64000;

    using OpenResult = std::variant<std::unique_ptr<AacFileWriter>, QString>;
    // Creates or replaces the file and writes nothing yet.
    static OpenResult open(const QString& path, int sampleRate);

    // Releases everything; without `close`, what the encoder still holds is lost.
    ~AacFileWriter();
    AacFileWriter(const AacFileWriter&) = delete;
    AacFileWriter& operator=(const AacFileWriter&) = delete;

    int sampleRate() const noexcept;
    // Samples of silence the encoder puts before the first input sample (its priming), at the
    // file's rate. ADTS has no field for it, so replay must take it off itself.
    int encoderDelay() const noexcept;

    // Samples at the file's rate, any count. Whole frames are encoded and handed to the disk
    // before this returns, so a kill loses only what the encoder still holds.
    std::optional<QString> write(std::span<const float> samples);
    // Encodes the rest, the last frame short, and closes the file. Nothing on success, else why.
    std::optional<QString> close();

private:
    struct Impl;
    explicit AacFileWriter(std::unique_ptr<Impl> impl);

    std::unique_ptr<Impl> impl_;
};

} // namespace ostrel
