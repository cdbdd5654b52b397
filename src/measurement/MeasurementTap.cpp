#include <cstring>
#include <vector>

#include "measurement/MeasurementPipeline.h"

namespace ostrel {

MeasurementPipeline::TapProvider MeasurementPipeline::makeTapProvider(
    std::shared_ptr<MeasurementPipeline> pipeline, int channel,
    std::function<void(MeasurementInterval)> deliver, MainThreadPoster postToMain)
{
    // The scratch buffer is the one copy on this path (de-interleaving); it grows only for a
    // block larger than any before.
    auto scratch = std::make_shared<std::vector<float>>();
    auto sharedDeliver
        = std::make_shared<std::function<void(MeasurementInterval)>>(std::move(deliver));
    return [pipeline = std::move(pipeline), channel, sharedDeliver, scratch,
               postToMain = std::move(postToMain)](const AudioBufferView& buffer) {
        // A device that lost channels must not crash the tap.
        if (channel < 0 || channel >= buffer.channelCount) return;
        if (buffer.format != AudioBufferView::SampleFormat::float32) return;
        if (buffer.data == nullptr || buffer.frameCount == 0) return;

        const auto channels = static_cast<std::size_t>(buffer.channelCount);
        const auto frames = buffer.frameCount;
        if (scratch->size() < frames) scratch->resize(frames);
        float* out = scratch->data();
        const std::byte* in = buffer.data + static_cast<std::size_t>(channel) * sizeof(float);
        const std::size_t stride = channels * sizeof(float);
        for (std::size_t i = 0; i < frames; ++i) {
            std::memcpy(out + i, in + i * stride, sizeof(float));
        }

        auto interval = pipeline->process(std::span<const float>(out, frames));
        if (interval && postToMain) {
            postToMain([sharedDeliver, value = std::move(*interval)]() mutable {
                if (*sharedDeliver) (*sharedDeliver)(std::move(value));
            });
        }
    };
}

} // namespace ostrel
