#pragma once

// Captures a PulseAudio source on a thread of its own and notes, at every read, when on the
// monotonic clock the next sample to read was captured, so that a test can tell when each
// captured sample reached the server.
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace ostrel::recording_test {

class MonitorCapture {
public:
    using Clock = std::chrono::steady_clock;

    struct Stamp {
        std::int64_t sample = 0; // index of the next sample to read
        Clock::time_point capturedAt;
    };

    MonitorCapture(std::string source, int sampleRate);
    ~MonitorCapture();
    MonitorCapture(const MonitorCapture&) = delete;
    MonitorCapture& operator=(const MonitorCapture&) = delete;

    // Empty when the capture runs, the server's message when it could not start.
    std::string start();
    void stop();
    // Whether the capture has caught up with the present: its stamps are only exact from then.
    bool settled() const { return settled_; }

    // Valid after stop().
    const std::vector<float>& samples() const { return samples_; }
    const std::vector<Stamp>& stamps() const { return stamps_; }
    // When sample `index` was captured, from the stamps around it.
    Clock::time_point capturedAt(std::int64_t index) const;

private:
    void run(void* stream);

    std::string source_;
    int sampleRate_;
    std::atomic<bool> running_ {false};
    std::atomic<bool> settled_ {false};
    std::thread thread_;
    std::vector<float> samples_;
    std::vector<Stamp> stamps_;
};

} // namespace ostrel::recording_test
