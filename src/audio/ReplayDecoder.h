#pragma once

// Decodes a recorded show's "audio.aac" for replay: mono 32-bit float from any sample of the
// decoded stream, so the player can start the sound wherever the playhead lands. FFmpeg stays
// behind the pimpl.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>

namespace ostrel {

class ReplayDecoder {
public:
    using OpenResult = std::variant<std::unique_ptr<ReplayDecoder>, std::string>;

    // Reads every packet header once, so that the length is exact and a seek finds its packet
    // without a search; a three-hour show is about 500,000 packets.
    static OpenResult open(const std::string& path);

    ~ReplayDecoder();
    ReplayDecoder(const ReplayDecoder&) = delete;
    ReplayDecoder& operator=(const ReplayDecoder&) = delete;

    int sampleRate() const noexcept;
    // Samples the whole file decodes to, the encoder's priming included.
    std::int64_t length() const noexcept;

    // The next `read` starts at sample `frame` of the decoded stream. False when it is past
    // the end or the file can't be repositioned.
    bool seek(std::int64_t frame);
    // Up to `maxFrames` samples; fewer only at the end of the file or on an error.
    std::size_t read(float* destination, std::size_t maxFrames);
    // Empty unless decoding failed.
    const std::string& error() const noexcept;

private:
    struct Impl;
    explicit ReplayDecoder(std::unique_ptr<Impl> impl);

    std::unique_ptr<Impl> impl_;
};

} // namespace ostrel
