#include "recording/MonitorCapture.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/mainloop.h>
#include <pulse/stream.h>

namespace ostrel::recording_test {

namespace {

constexpr int blockFrames = 48; // a millisecond at 48 kHz: stamps fine enough for the test
// A new capture first reads what the server had kept of the past, fast.
constexpr auto settledLatency = std::chrono::milliseconds(20);

struct Connection {
    pa_mainloop* loop = nullptr;
    pa_context* context = nullptr;
    pa_stream* stream = nullptr;

    ~Connection()
    {
        if (stream != nullptr) {
            pa_stream_disconnect(stream);
            pa_stream_unref(stream);
        }
        if (context != nullptr) {
            pa_context_disconnect(context);
            pa_context_unref(context);
        }
        if (loop != nullptr) pa_mainloop_free(loop);
    }

    // Runs the loop until `ready` holds or something fails; the failure's text, or empty.
    template <typename Ready> std::string await(Ready ready)
    {
        for (int turn = 0; turn < 5000; ++turn) {
            if (pa_context_get_state(context) == PA_CONTEXT_FAILED
                || pa_context_get_state(context) == PA_CONTEXT_TERMINATED)
                return pa_strerror(pa_context_errno(context));
            if (stream != nullptr && pa_stream_get_state(stream) == PA_STREAM_FAILED)
                return pa_strerror(pa_context_errno(context));
            if (ready()) return {};
            if (pa_mainloop_iterate(loop, 1, nullptr) < 0) return "the main loop stopped";
        }
        return "no answer from the server";
    }
};

} // namespace

MonitorCapture::MonitorCapture(std::string source, int sampleRate)
    : source_(std::move(source)), sampleRate_(sampleRate)
{
}

MonitorCapture::~MonitorCapture()
{
    stop();
}

std::string MonitorCapture::start()
{
    auto connection = std::make_unique<Connection>();
    connection->loop = pa_mainloop_new();
    connection->context = pa_context_new(pa_mainloop_get_api(connection->loop), "ostrel-tests");
    if (pa_context_connect(connection->context, nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0)
        return pa_strerror(pa_context_errno(connection->context));
    if (auto problem = connection->await(
            [&] { return pa_context_get_state(connection->context) == PA_CONTEXT_READY; });
        !problem.empty())
        return problem;

    // Mono floats at the recording's rate: one sample per sample of the replayed sound.
    pa_sample_spec format {};
    format.format = PA_SAMPLE_FLOAT32LE;
    format.rate = static_cast<std::uint32_t>(sampleRate_);
    format.channels = 1;
    connection->stream = pa_stream_new(connection->context, "monitor capture", &format, nullptr);
    pa_buffer_attr attributes {};
    attributes.maxlength = static_cast<std::uint32_t>(-1);
    attributes.fragsize = blockFrames * sizeof(float);
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_ADJUST_LATENCY | PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE);
    if (pa_stream_connect_record(connection->stream, source_.c_str(), &attributes, flags) < 0)
        return pa_strerror(pa_context_errno(connection->context));
    if (auto problem = connection->await(
            [&] { return pa_stream_get_state(connection->stream) == PA_STREAM_READY; });
        !problem.empty())
        return problem;

    samples_.clear();
    stamps_.clear();
    samples_.reserve(static_cast<std::size_t>(sampleRate_) * 30);
    stamps_.reserve(60000);
    running_ = true;
    thread_ = std::thread([this, opened = connection.release()] { run(opened); });
    return {};
}

void MonitorCapture::stop()
{
    running_ = false;
    if (thread_.joinable()) thread_.join();
}

void MonitorCapture::run(void* opaque)
{
    std::unique_ptr<Connection> connection(static_cast<Connection*>(opaque));
    while (running_) {
        if (pa_mainloop_iterate(connection->loop, 1, nullptr) < 0) break;
        const void* data = nullptr;
        std::size_t bytes = 0;
        while (pa_stream_readable_size(connection->stream) > 0
            && pa_stream_peek(connection->stream, &data, &bytes) == 0 && bytes > 0) {
            const std::size_t count = bytes / sizeof(float);
            if (data == nullptr) {
                samples_.insert(samples_.end(), count, 0.0F); // a hole in the capture
            } else {
                const auto* first = static_cast<const float*>(data);
                samples_.insert(samples_.end(), first, first + count);
            }
            pa_stream_drop(connection->stream);
            const auto now = Clock::now();
            pa_usec_t latency = 0;
            int negative = 0;
            // A monitor's latency is negative: its samples leave before the sink plays them.
            if (pa_stream_get_latency(connection->stream, &latency, &negative) == 0) {
                const auto shift = std::chrono::microseconds(latency);
                settled_ = negative != 0 || shift < settledLatency;
                stamps_.push_back({static_cast<std::int64_t>(samples_.size()),
                    negative != 0 ? now + shift : now - shift});
            }
        }
    }
}

MonitorCapture::Clock::time_point MonitorCapture::capturedAt(std::int64_t index) const
{
    // Every stamp near the sample says when it was captured; the median of those is safe from a
    // read the scheduler delayed. Only near ones: the server rewinds a monitor when a stream
    // starts, which shifts the stamps before it.
    const auto window = static_cast<std::int64_t>(sampleRate_) / 4;
    std::vector<Clock::duration> times;
    for (const Stamp& stamp : stamps_) {
        if (std::abs(stamp.sample - index) > window) continue;
        const auto after = std::chrono::duration<double>(
            static_cast<double>(index - stamp.sample) / sampleRate_);
        times.push_back(stamp.capturedAt.time_since_epoch()
            + std::chrono::duration_cast<Clock::duration>(after));
    }
    if (times.empty()) return {};
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return Clock::time_point(*middle);
}

} // namespace ostrel::recording_test
