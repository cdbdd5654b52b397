#pragma once

// One buffer as an audio backend delivers it: interleaved frames of some sample format. The
// view does not own the bytes; they are valid only during the tap call.
#include <cstddef>

namespace ostrel {

struct AudioBufferView {
    enum class SampleFormat { float32, int16, int32, unknown };

    const std::byte* data = nullptr;
    std::size_t frameCount = 0;
    int channelCount = 0;
    SampleFormat format = SampleFormat::unknown;
};

} // namespace ostrel
