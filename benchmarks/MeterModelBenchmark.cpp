// What one interval costs the main thread in the meter model at 48 kHz: reading, statistics,
// graph, band smoothing and peak holds for every resolution, spectrogram and feedback.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <vector>

#include "measurement/MeasurementPipeline.h"
#include "model/MeterModel.h"

namespace {

std::vector<ostrel::MeasurementInterval> realIntervals()
{
    // Ten seconds of a tone over noise through the real pipeline, so every interval carries a
    // full spectrum.
    ostrel::MeasurementPipeline pipeline;
    pipeline.prepare(48000.0);
    std::vector<float> block(4800);
    std::uint32_t state = 3;
    std::vector<ostrel::MeasurementInterval> intervals;
    for (int b = 0; b < 100; ++b) {
        for (std::size_t i = 0; i < block.size(); ++i) {
            state = state * 1664525u + 1013904223u;
            const double t = static_cast<double>(b * 4800 + static_cast<int>(i)) / 48000.0;
            block[i] = static_cast<float>(0.1 * std::sin(2.0 * std::numbers::pi * 440.0 * t)
                + 0.02 * ((state >> 8) / 16777216.0 - 0.5));
        }
        if (auto interval = pipeline.process(block); interval && interval->spectrum)
            intervals.push_back(*interval);
    }
    return intervals;
}

void meterModelIngest(benchmark::State& state)
{
    const auto intervals = realIntervals();
    ostrel::MeterModel meter;
    auto now = ostrel::Date {} + std::chrono::hours(500000);
    std::size_t index = 0;
    for (auto _ : state) {
        meter.ingest(intervals[index], now);
        index = (index + 1) % intervals.size();
        now += std::chrono::milliseconds(100);
    }
    state.SetLabel("per interval");
}

} // namespace

BENCHMARK(meterModelIngest)->Unit(benchmark::kMicrosecond);
