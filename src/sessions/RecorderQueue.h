#pragma once

// Carries the recorded channel from the audio thread to the recorder's worker, block by block
// and in order. One producer, one consumer; the storage is allocated once, so that in a show
// the audio thread only copies samples and never waits for the disk.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "common/Date.h"
#include "measurement/MeasurementInterval.h"

namespace ostrel {

class RecorderQueue {
public:
    struct Capacity {
        // Room for a disk that stalls for a while; whichever fills first: 2^20 samples are about
        // 21 s at 48 kHz (5 s at 192 kHz), 1024 blocks about 20 s of the input's 20 ms blocks.
        std::size_t samples = std::size_t {1} << 20;
        std::size_t blocks = 1024;
    };

    // What the consumer sees of one block; the samples stay valid only during the visit.
    struct Block {
        std::span<const float> samples;
        double sampleRate = 0.0;
        const std::optional<MeasurementInterval>* interval = nullptr;
        Date at;
    };

    explicit RecorderQueue(Capacity capacity);
    RecorderQueue(const RecorderQueue&) = delete;
    RecorderQueue& operator=(const RecorderQueue&) = delete;

    // Producer (audio thread). Never waits on the consumer. When the ring is full the block
    // goes to a heap list instead: a slow disk costs an allocation, never a lost block.
    void push(std::span<const float> samples, double sampleRate,
        const std::optional<MeasurementInterval>& interval, Date at);

    // Consumer (worker). Visits every block pushed so far, oldest first; returns how many.
    std::size_t drain(const std::function<void(const Block&)>& visit);

    // Blocks that missed the ring since the start; for tests and diagnostics.
    std::uint64_t overflowCount() const { return overflowTotal_.load(std::memory_order_relaxed); }

private:
    struct Slot {
        std::uint64_t start = 0; // position of the first sample, counted since the start
        std::size_t count = 0;
        double sampleRate = 0.0;
        std::optional<MeasurementInterval> interval;
        Date at;
    };
    struct OwnedBlock {
        std::vector<float> samples;
        double sampleRate = 0.0;
        std::optional<MeasurementInterval> interval;
        Date at;
    };

    bool tryPushRing(std::span<const float> samples, double sampleRate,
        const std::optional<MeasurementInterval>& interval, Date at);

    std::vector<float> samples_;
    std::vector<Slot> slots_;

    // Monotonic counters; each is written by one side only.
    std::atomic<std::uint64_t> slotsWritten_ {0};
    std::atomic<std::uint64_t> slotsRead_ {0};
    std::uint64_t sampleWrite_ = 0; // producer only
    std::atomic<std::uint64_t> sampleRead_ {0};

    // While this list holds blocks, new blocks join it too, so that the order stays.
    std::mutex overflowMutex_; // held only to add or take one block, never while writing
    std::deque<OwnedBlock> overflow_;
    std::atomic<std::size_t> overflowSize_ {0};
    std::atomic<std::uint64_t> overflowTotal_ {0};
};

} // namespace ostrel
