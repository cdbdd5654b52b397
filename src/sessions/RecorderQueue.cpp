#include "sessions/RecorderQueue.h"

#include <algorithm>
#include <utility>

#include "measurement/FiniteSamples.h"

namespace ostrel {

RecorderQueue::RecorderQueue(Capacity capacity)
    : samples_(std::max<std::size_t>(capacity.samples, 1)),
      slots_(std::max<std::size_t>(capacity.blocks, 1))
{
}

void RecorderQueue::push(std::span<const float> samples, double sampleRate,
    const std::optional<MeasurementInterval>& interval, Date at)
{
    // Only this side adds to the list, so a list seen empty stays empty until we add to it.
    if (overflowSize_.load(std::memory_order_acquire) == 0
        && tryPushRing(samples, sampleRate, interval, at)) {
        return;
    }
    OwnedBlock block {std::vector<float>(samples.size()), sampleRate, interval, at};
    FiniteSamples::copy(samples, block.samples.data());
    {
        const std::lock_guard lock(overflowMutex_);
        overflow_.push_back(std::move(block));
    }
    overflowSize_.fetch_add(1, std::memory_order_release);
    overflowTotal_.fetch_add(1, std::memory_order_relaxed);
}

bool RecorderQueue::tryPushRing(std::span<const float> samples, double sampleRate,
    const std::optional<MeasurementInterval>& interval, Date at)
{
    const std::uint64_t written = slotsWritten_.load(std::memory_order_relaxed);
    if (written - slotsRead_.load(std::memory_order_acquire) >= slots_.size()) return false;

    const std::uint64_t ringSize = samples_.size();
    const std::size_t count = samples.size();
    if (count > ringSize) return false;
    // A block is kept in one piece: one that would wrap starts again at the ring's beginning.
    std::uint64_t start = sampleWrite_;
    const std::uint64_t offset = start % ringSize;
    if (offset + count > ringSize) start += ringSize - offset;
    if (start + count - sampleRead_.load(std::memory_order_acquire) > ringSize) return false;

    // The encoder refuses NaN and infinity and would end the show's audio file.
    FiniteSamples::copy(samples, samples_.data() + static_cast<std::ptrdiff_t>(start % ringSize));
    Slot& slot = slots_[written % slots_.size()];
    slot.start = start;
    slot.count = count;
    slot.sampleRate = sampleRate;
    slot.interval = interval;
    slot.at = at;
    sampleWrite_ = start + count;
    slotsWritten_.store(written + 1, std::memory_order_release);
    return true;
}

std::size_t RecorderQueue::drain(const std::function<void(const Block&)>& visit)
{
    std::size_t visited = 0;
    for (;;) {
        const std::uint64_t read = slotsRead_.load(std::memory_order_relaxed);
        if (read != slotsWritten_.load(std::memory_order_acquire)) {
            const Slot& slot = slots_[read % slots_.size()];
            const std::uint64_t ringSize = samples_.size();
            const std::span<const float> samples(
                samples_.data() + static_cast<std::ptrdiff_t>(slot.start % ringSize), slot.count);
            visit(Block {samples, slot.sampleRate, &slot.interval, slot.at});
            sampleRead_.store(slot.start + slot.count, std::memory_order_release);
            slotsRead_.store(read + 1, std::memory_order_release);
            ++visited;
            continue;
        }
        if (overflowSize_.load(std::memory_order_acquire) == 0) return visited;
        // Blocks may have reached the ring, and filled it, between the two looks: those are
        // older than the list's. Once the list holds blocks, the ring gets no new ones.
        if (read != slotsWritten_.load(std::memory_order_acquire)) continue;
        OwnedBlock block;
        {
            const std::lock_guard lock(overflowMutex_);
            block = std::move(overflow_.front());
            overflow_.pop_front();
        }
        overflowSize_.fetch_sub(1, std::memory_order_release);
        visit(Block {block.samples, block.sampleRate, &block.interval, block.at});
        ++visited;
    }
}

} // namespace ostrel
