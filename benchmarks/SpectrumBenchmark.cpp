// Cost of the spectrum analysis at 48 kHz, and the floor it is judged against: the two windowed
// transforms per interval plus the per-sample filter chain.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <vector>

#include <fftw3.h>

#include "measurement/MeasurementPipeline.h"
#include "measurement/SPLProcessor.h"
#include "measurement/SpectrumAnalyzer.h"

namespace {

constexpr double rate = 48000.0;

std::vector<float> testSignal(std::size_t count)
{
    std::vector<float> samples(count);
    std::uint32_t state = 11;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525u + 1013904223u;
        samples[i] = static_cast<float>(
            0.1 * std::sin(2.0 * std::numbers::pi * 440.0 * static_cast<double>(i) / rate)
            + 0.05 * ((state >> 8) / 16777216.0 - 0.5));
    }
    return samples;
}

void analyzeShortWindowOnly(benchmark::State& state)
{
    ostrel::SpectrumAnalyzer analyzer(rate);
    analyzer.append(testSignal(20000));
    for (auto _ : state)
        benchmark::DoNotOptimize(analyzer.analyze(0.0));
}

void analyzeBothWindows(benchmark::State& state)
{
    ostrel::SpectrumAnalyzer analyzer(rate);
    analyzer.append(testSignal(65536));
    for (auto _ : state)
        benchmark::DoNotOptimize(analyzer.analyze(0.0));
}

// One second of audio in blocks of 480 through the whole pipeline, ten analyses included.
void pipelineWithSpectra(benchmark::State& state)
{
    const auto signal = testSignal(48000);
    ostrel::MeasurementPipeline pipeline;
    pipeline.configure(
        ostrel::FrequencyWeighting::a, ostrel::TimeWeighting::fast, 0.0, std::nullopt);
    pipeline.prepare(rate);
    for (int i = 0; i < 2; ++i) // fill the long window first
        for (std::size_t p = 0; p < signal.size(); p += 480)
            pipeline.process(std::span(signal.data() + p, 480));
    for (auto _ : state) {
        for (std::size_t p = 0; p < signal.size(); p += 480)
            benchmark::DoNotOptimize(pipeline.process(std::span(signal.data() + p, 480)));
    }
    state.counters["xRealTime"]
        = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// The floor: per second of audio, ten windowed r2c transforms of each length plus the filter
// chain and detectors over every sample.
void floorOfOneSecond(benchmark::State& state)
{
    const auto signal = testSignal(65536);
    const int sizes[2] = {16384, 65536};
    float* input[2];
    fftwf_complex* output[2];
    fftwf_plan plans[2];
    std::vector<float> windows[2];
    for (int w = 0; w < 2; ++w) {
        input[w] = fftwf_alloc_real(static_cast<std::size_t>(sizes[w]));
        output[w] = fftwf_alloc_complex(static_cast<std::size_t>(sizes[w] / 2 + 1));
        plans[w] = fftwf_plan_dft_r2c_1d(
            sizes[w], input[w], output[w], static_cast<unsigned>(state.range(0)));
        windows[w].resize(static_cast<std::size_t>(sizes[w]));
        for (int i = 0; i < sizes[w]; ++i)
            windows[w][static_cast<std::size_t>(i)]
                = static_cast<float>(0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * i / sizes[w]));
    }
    ostrel::SPLProcessor processor(
        rate, ostrel::FrequencyWeighting::a, ostrel::TimeWeighting::fast, 0.0);
    for (auto _ : state) {
        processor.process(std::span(signal.data(), 48000));
        benchmark::DoNotOptimize(processor.takeInterval());
        for (int interval = 0; interval < 10; ++interval) {
            for (int w = 0; w < 2; ++w) {
                for (int i = 0; i < sizes[w]; ++i)
                    input[w][i] = signal[static_cast<std::size_t>(i)]
                        * windows[w][static_cast<std::size_t>(i)];
                fftwf_execute(plans[w]);
                benchmark::DoNotOptimize(output[w][1][0]);
            }
        }
    }
    for (int w = 0; w < 2; ++w) {
        fftwf_destroy_plan(plans[w]);
        fftwf_free(input[w]);
        fftwf_free(output[w]);
    }
}

} // namespace

BENCHMARK(analyzeShortWindowOnly)->Unit(benchmark::kMicrosecond);
BENCHMARK(analyzeBothWindows)->Unit(benchmark::kMicrosecond);
BENCHMARK(pipelineWithSpectra)->Unit(benchmark::kMillisecond);
BENCHMARK(floorOfOneSecond)->Arg(FFTW_ESTIMATE)->Arg(FFTW_MEASURE)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
