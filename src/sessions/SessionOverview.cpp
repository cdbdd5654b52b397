#include "sessions/SessionOverview.h"

#include <algorithm>
#include <cmath>

#include "measurement/SpectrumBand.h"

namespace ostrel {

namespace {

constexpr std::size_t fineCount = SpectrumBand::fineCount;
// ln(10) / 10: 10^(dB / 10) as one exp, which costs half of pow.
constexpr double decibelToPowerExponent = 0.23025850929940458;
constexpr double floorLevel = -200.0;

} // namespace

float SessionOverview::spectrogramLevel(std::int64_t column, std::int64_t row) const
{
    return spectrogram[static_cast<std::size_t>(column) * fineCount
        + static_cast<std::size_t>(row)];
}

SessionOverview SessionOverview::build(
    const RecordingFrames& frames, const std::function<bool()>& isCancelled)
{
    const std::int64_t count = frames.count();
    SessionOverview overview;
    overview.columns = std::clamp<std::int64_t>(count, 1, maxColumns);
    const auto columnCount = static_cast<std::size_t>(overview.columns);
    overview.levels.assign(columnCount, floorLevel);
    // Power is summed in double: a column of a long show averages hundreds of frames.
    std::vector<double> sums(columnCount * fineCount, 0.0);
    std::vector<std::int64_t> counts(columnCount, 0);
    overview.checkpoints.reserve(static_cast<std::size_t>(count / checkpointSpacing + 1));

    LevelStatistics running;
    for (std::int64_t index = 0; index < count; ++index) {
        if (index % checkpointSpacing == 0) overview.checkpoints.push_back(running);
        const auto frame = frames.frame(index, true);
        if (!frame) break;
        const MeasurementInterval& interval = frame->interval;
        running.add(interval);
        const auto column = static_cast<std::size_t>(
            std::min(index * overview.columns / count, overview.columns - 1));
        overview.levels[column] = std::max(overview.levels[column], interval.level);
        if (interval.spectrum) {
            double* columnSums = sums.data() + column * fineCount;
            const auto& fine = interval.spectrum->fineBandLevels;
            for (std::size_t row = 0; row < fine.size(); ++row)
                columnSums[row] += std::exp(fine[row] * decibelToPowerExponent);
            ++counts[column];
        }
        if (index % cancelCheckSpacing == 0 && isCancelled && isCancelled()) break;
    }

    overview.spectrogram.assign(columnCount * fineCount, static_cast<float>(floorLevel));
    for (std::size_t column = 0; column < columnCount; ++column) {
        if (counts[column] == 0) continue;
        const double frameCount = static_cast<double>(counts[column]);
        for (std::size_t row = 0; row < fineCount; ++row) {
            const double mean = sums[column * fineCount + row] / frameCount;
            overview.spectrogram[column * fineCount + row]
                = static_cast<float>(10.0 * std::log10(std::max(mean, 1e-20)));
        }
    }
    return overview;
}

} // namespace ostrel
