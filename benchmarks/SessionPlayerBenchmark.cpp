// The replay of a three-hour show built in memory: the scrubber's overview, built once when the
// replay opens, and a seek anywhere, which runs at every drag of the playhead.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "replay/SessionPlayer.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"
#include "sessions/SessionOverview.h"

namespace {

using namespace ostrel;

constexpr qsizetype threeHoursOfFrames = 3 * 60 * 60 * 10;

// 108,000 frames, ten a second, each with a spectrum and a level that moves.
const RecordingFrames& threeHours()
{
    static const RecordingFrames frames = [] {
        QByteArray bytes = RecordingFormat::header();
        bytes.reserve(
            bytes.size() + threeHoursOfFrames * static_cast<qsizetype>(RecordingFormat::frameSize));
        RecordedFrame frame;
        frame.interval.sampleCount = 4800;
        frame.interval.sampleRate = 48000.0;
        for (qsizetype index = 0; index < threeHoursOfFrames; ++index) {
            const double level = 60.0 + static_cast<double>(index % 300) / 10.0;
            frame.audioTime = static_cast<double>(index + 1) / 10.0;
            frame.wallTime = frame.audioTime + 0.02;
            frame.interval.level = level;
            frame.interval.maxLevel = level + 1.0;
            frame.interval.energy = std::pow(10.0, level / 10.0) * 4800.0;
            frame.interval.peakPower = std::pow(10.0, (level + 3.0) / 10.0);
            auto& spectrum = frame.interval.spectrum.emplace();
            spectrum.bandLevels.fill(level - 10.0);
            spectrum.fineBandLevels.fill(level - 20.0);
            bytes += RecordingFormat::encode(frame);
        }
        return *RecordingFrames::fromBytes(bytes);
    }();
    return frames;
}

ShowSession show()
{
    return ShowSession(QStringLiteral("Benchmark"), Date {}, QStringLiteral("LAeq Fast"));
}

void BM_OverviewOfThreeHours(benchmark::State& state)
{
    const RecordingFrames& frames = threeHours();
    for (auto _ : state) {
        SessionOverview overview = SessionOverview::build(frames);
        benchmark::DoNotOptimize(overview);
    }
    state.counters["frames"] = static_cast<double>(frames.count());
}
BENCHMARK(BM_OverviewOfThreeHours)->Unit(benchmark::kMillisecond);

// One seek to a random point, with the overview's checkpoints (the normal case) or while the
// overview is still being built (every frame before the warm-up is added up).
void seekAnywhere(benchmark::State& state, bool withOverview)
{
    SessionPlayer::Options options;
    options.runsTicker = false;
    options.runInBackground = [withOverview](auto build, auto store) {
        if (withOverview) store(build());
    };
    SessionPlayer player(show(), threeHours(), nullptr, options);
    std::mt19937 random(11);
    std::uniform_real_distribution<double> seconds(0.0, player.duration());
    for (auto _ : state) {
        player.seek(seconds(random));
        benchmark::DoNotOptimize(player.meterModel().statistics());
    }
}

void BM_SeekAnywhereInThreeHours(benchmark::State& state)
{
    seekAnywhere(state, true);
}
BENCHMARK(BM_SeekAnywhereInThreeHours)->Unit(benchmark::kMicrosecond);

void BM_SeekAnywhereInThreeHoursBeforeTheOverview(benchmark::State& state)
{
    seekAnywhere(state, false);
}
BENCHMARK(BM_SeekAnywhereInThreeHoursBeforeTheOverview)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
