// Opening a three-hour measurements file and seeking in it, as replay does at every drag of the
// playhead.
#include <benchmark/benchmark.h>

#include <random>

#include <QFile>
#include <QTemporaryDir>

#include "recording/RecordingFile.h"
#include "sessions/RecordingFormat.h"
#include "sessions/RecordingFrames.h"

namespace {

using namespace ostrel;

constexpr qsizetype threeHoursOfFrames = 3 * 60 * 60 * 10;

// Written once per process: 108,000 frames, ten a second, each with a spectrum.
const QString& threeHourFile()
{
    static QTemporaryDir folder;
    static const QString path = [] {
        const QString file = folder.filePath(QString::fromLatin1(RecordingFormat::framesFileName));
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly)) return QString();
        out.write(RecordingFormat::header());
        RecordedFrame frame;
        frame.interval.sampleCount = 4800;
        frame.interval.sampleRate = 48000.0;
        frame.interval.spectrum.emplace();
        for (qsizetype index = 0; index < threeHoursOfFrames; ++index) {
            frame.audioTime = static_cast<double>(index + 1) / 10.0;
            frame.wallTime = frame.audioTime + 0.02;
            out.write(RecordingFormat::encode(frame));
        }
        return file;
    }();
    return path;
}

void BM_OpenThreeHourMeasurements(benchmark::State& state)
{
    const QString& path = threeHourFile();
    for (auto _ : state) {
        auto frames = RecordingFile::open(path).frames;
        if (!frames || frames->count() != threeHoursOfFrames) state.SkipWithError("cannot open");
        benchmark::DoNotOptimize(frames);
    }
    state.counters["bytes"] = static_cast<double>(QFile(path).size());
}
BENCHMARK(BM_OpenThreeHourMeasurements)->Unit(benchmark::kMicrosecond);

// One iteration: open the file and make 1000 random searches by audio time.
void BM_OpenAndSeekThousandTimes(benchmark::State& state)
{
    const QString& path = threeHourFile();
    std::mt19937 random(7);
    std::uniform_real_distribution<double> seconds(0.0, 3.0 * 3600.0);
    for (auto _ : state) {
        auto frames = RecordingFile::open(path).frames;
        if (!frames) state.SkipWithError("cannot open");
        qsizetype sum = 0;
        for (int search = 0; search < 1000; ++search)
            sum += frames->lastIndexAtOrBefore(seconds(random)).value_or(0);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_OpenAndSeekThousandTimes)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
