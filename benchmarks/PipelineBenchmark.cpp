// Throughput of the measuring path on levels alone (weighting, detectors, interval sums, cut
// into intervals of a tenth of a second as the pipeline does), in multiples of real time at
// 48 kHz. The exposure's A energy and C peak ride in the same pass, whatever the weighting. The
// pipeline's spectra are measured in SpectrumBenchmark.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "measurement/SPLProcessor.h"

namespace {

constexpr double rate = 48000.0;

std::vector<float> testSignal(std::size_t count)
{
    std::vector<float> samples(count);
    std::uint32_t state = 7;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525u + 1013904223u;
        samples[i] = static_cast<float>(
            0.1 * std::sin(2.0 * std::numbers::pi * 1000.0 * static_cast<double>(i) / rate)
            + 0.01 * ((state >> 8) / 16777216.0 - 0.5));
    }
    return samples;
}

void pipelineLevels(benchmark::State& state, ostrel::FrequencyWeighting weighting)
{
    const auto blockSize = static_cast<std::size_t>(state.range(0));
    const auto signal = testSignal(48000);
    ostrel::SPLProcessor processor(rate, weighting, ostrel::TimeWeighting::fast, 0.0);
    std::size_t position = 0;
    for (auto _ : state) {
        if (position + blockSize > signal.size()) position = 0;
        processor.process(std::span(signal.data() + position, blockSize));
        if (processor.pendingSampleCount() >= 4800)
            benchmark::DoNotOptimize(processor.takeInterval());
        position += blockSize;
    }
    const double seconds = static_cast<double>(state.iterations() * blockSize) / rate;
    state.counters["xRealTime"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * blockSize));
}

void levelsA(benchmark::State& state)
{
    pipelineLevels(state, ostrel::FrequencyWeighting::a);
}
void levelsC(benchmark::State& state)
{
    pipelineLevels(state, ostrel::FrequencyWeighting::c);
}
void levelsZ(benchmark::State& state)
{
    pipelineLevels(state, ostrel::FrequencyWeighting::z);
}

} // namespace

BENCHMARK(levelsA)->Arg(480)->Arg(4800);
BENCHMARK(levelsC)->Arg(480)->Arg(4800);
BENCHMARK(levelsZ)->Arg(480)->Arg(4800);
