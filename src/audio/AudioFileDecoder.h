#pragma once

// Reads any audio file FFmpeg can demux and decode as interleaved 32-bit float frames at the
// file's own sample rate and channel count. FFmpeg stays behind the pimpl so that the rest of the
// system never includes its headers.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ostrel {

class AudioFileDecoder {
public:
    // Either a decoder, or why the file cannot be read (FFmpeg's message, e.g. "No such file or
    // directory"). A decoder comes back only once the first audio has decoded, so a file that
    // opens is known to be audio before a caller writes anything.
    using OpenResult = std::variant<std::unique_ptr<AudioFileDecoder>, std::string>;

    static OpenResult open(const std::string& path);
    // Standard input, which cannot seek: formats that need seeking (most MP4) fail here.
    static OpenResult openStandardInput();

    // FFmpeg logs warnings to standard error by itself; a caller that owns standard error, such
    // as a command-line tool, turns that off. Process-wide.
    static void quietLibraryLog();

    ~AudioFileDecoder();
    AudioFileDecoder(const AudioFileDecoder&) = delete;
    AudioFileDecoder& operator=(const AudioFileDecoder&) = delete;

    int sampleRate() const noexcept;
    int channelCount() const noexcept;
    // From the container; absent for streams that do not say, such as a pipe.
    std::optional<double> durationSeconds() const noexcept;
    // The decoder's short name, e.g. "pcm_s16le" or "aac".
    const std::string& codecName() const noexcept;

    // Replaces `interleaved` with up to `maxFrames` frames and returns how many. Fewer than asked
    // only at the end of the file or on an error; 0 once nothing is left. Tell the two apart
    // with `error()`.
    std::size_t read(std::vector<float>& interleaved, std::size_t maxFrames);

    // Empty unless reading failed; reading stops at the first failure.
    const std::string& error() const noexcept;
    // Packets the decoder rejected as corrupt and that were left out, as FFmpeg's own tools do.
    std::int64_t skippedPacketCount() const noexcept;

private:
    struct Impl;
    explicit AudioFileDecoder(std::unique_ptr<Impl> impl);
    static OpenResult openUrl(const std::string& url);

    std::unique_ptr<Impl> impl_;
};

} // namespace ostrel
