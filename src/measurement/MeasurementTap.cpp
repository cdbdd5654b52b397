#include <algorithm>
#include <cstring>
#include <vector>

#include "measurement/MeasurementPipeline.h"

namespace ostrel {

MeasurementPipeline::TapProvider MeasurementPipeline::makeTapProvider(
    std::shared_ptr<MeasurementPipeline> pipeline, int channel, std::size_t largestBlock,
    std::function<void(MeasurementInterval)> deliver, MainThreadPoster postToMain)
{
    // The scratch buffer is the one copy on this path (de-interleaving). It is sized here, on the
    // caller's thread: growing it on the audio thread would allocate in the middle of a stream.
    auto scratch = std::make_shared<std::vector<float>>(std::max<std::size_t>(largestBlock, 1));
    auto sharedDeliver
        = std::make_shared<std::function<void(MeasurementInterval)>>(std::move(deliver));
    return [pipeline = std::move(pipeline), channel, sharedDeliver, scratch,
               postToMain = std::move(postToMain)](const AudioBufferView& buffer) {
        // A device that lost channels must not crash the tap.
        if (channel < 0 || channel >= buffer.channelCount) return;
        if (buffer.format != AudioBufferView::SampleFormat::float32) return;
        if (buffer.data == nullptr || buffer.frameCount == 0) return;

        const std::size_t stride = static_cast<std::size_t>(buffer.channelCount) * sizeof(float);
        const std::byte* in = buffer.data + static_cast<std::size_t>(channel) * sizeof(float);
        float* out = scratch->data();
        // A backend that breaks its promise of the largest block is measured piece by piece
        // rather than allocating here.
        for (std::size_t done = 0; done < buffer.frameCount;) {
            const std::size_t frames = std::min(scratch->size(), buffer.frameCount - done);
            for (std::size_t i = 0; i < frames; ++i)
                std::memcpy(out + i, in + (done + i) * stride, sizeof(float));
            done += frames;

            auto interval = pipeline->process(std::span<const float>(out, frames));
            if (interval && postToMain) {
                postToMain([sharedDeliver, value = std::move(*interval)]() mutable {
                    if (*sharedDeliver) (*sharedDeliver)(std::move(value));
                });
            }
        }
    };
}

} // namespace ostrel
