// The microphone correction's cost on the audio thread: a second of audio at 48 kHz filtered in
// blocks of the given size, summed tap by tap or through FFTs.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "measurement/CorrectionFilter.h"

using namespace ostrel;

namespace {

MicrophoneCorrection tiltedMicrophone()
{
    return MicrophoneCorrection(
        "tilted", {{20.0, -3.0}, {1000.0, 0.0}, {10000.0, 4.0}, {20000.0, 8.0}});
}

void filterOneSecond(benchmark::State& state, CorrectionFilter::Form form)
{
    const auto block = static_cast<std::size_t>(state.range(0));
    CorrectionFilter filter(tiltedMicrophone(), 48000.0);
    std::vector<float> samples(block);
    for (std::size_t i = 0; i < block; ++i)
        samples[i] = static_cast<float>(std::sin(0.05 * static_cast<double>(i)));
    const std::size_t blocksPerSecond = (48000 + block - 1) / block;
    for (auto _ : state) {
        for (std::size_t b = 0; b < blocksPerSecond; ++b)
            benchmark::DoNotOptimize(filter.process(samples, form).data());
    }
    // Read as "time per iteration" = time per second of audio.
    state.SetLabel("per second of 48 kHz audio");
}

void direct(benchmark::State& state)
{
    filterOneSecond(state, CorrectionFilter::Form::direct);
}

void overlapSave(benchmark::State& state)
{
    filterOneSecond(state, CorrectionFilter::Form::overlapSave);
}

} // namespace

BENCHMARK(direct)->Arg(32)->Arg(64)->Arg(128)->Arg(256)->Arg(480)->Arg(960)->Arg(4800)->Unit(
    benchmark::kMillisecond);
BENCHMARK(overlapSave)
    ->Arg(32)
    ->Arg(64)
    ->Arg(128)
    ->Arg(256)
    ->Arg(480)
    ->Arg(960)
    ->Arg(4800)
    ->Unit(benchmark::kMillisecond);
