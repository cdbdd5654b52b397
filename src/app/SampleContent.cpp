#include "app/SampleContent.h"

#include <cmath>
#include <numbers>

#include "measurement/MeasurementInterval.h"
#include "measurement/SPLMath.h"

namespace ostrel::SampleContent {

namespace {

constexpr int intervalsPerSecond = 10;
constexpr int seconds = 60;
constexpr double sampleRate = 48000.0;

MeasurementInterval interval(double level)
{
    MeasurementInterval value;
    value.sampleCount = static_cast<std::int64_t>(sampleRate) / intervalsPerSecond;
    value.sampleRate = sampleRate;
    const auto samples = static_cast<double>(value.sampleCount);
    value.energy = SPLMath::power(level) * samples;
    value.peakPower = SPLMath::power(level + 9.0);
    value.maxLevel = level + 1.5;
    value.level = level;
    // A real signal, well above the silence threshold, whatever the calibration.
    value.rawEnergy = SPLMath::power(level - 120.0) * samples;
    return value;
}

// Dialogue in the seventies with a music cue swelling towards the end, settling on `lastLevel`.
double levelAt(int index, int count)
{
    if (index == count - 1) return lastLevel;
    const double t = static_cast<double>(index) / intervalsPerSecond;
    const double speech = 4.0 * std::sin(t * 2.1) * std::sin(t * 0.37);
    const double swell = t > 36.0 ? 14.0 * std::sin((t - 36.0) / 24.0 * std::numbers::pi) : 0.0;
    return 69.0 + speech + swell + 0.8 * std::sin(t * 7.3);
}

} // namespace

std::vector<CueRecord> cues(Date end)
{
    const auto cue = [end](const char* number, const char* name, double secondsBeforeEnd) {
        CueRecord record;
        record.number = QString::fromUtf8(number);
        record.name = QString::fromUtf8(name);
        record.type = QStringLiteral("Audio");
        record.start = addingSeconds(end, -secondsBeforeEnd);
        return record;
    };
    // One without a number, as a cue fired by hand often is.
    return {cue("12", "Preshow", 54.0), cue("", "House out", 44.0), cue("14", "Overture", 24.0)};
}

void feed(AppModel& model, Date end)
{
    constexpr int count = seconds * intervalsPerSecond;
    const Date start = addingSeconds(end, -static_cast<double>(seconds));
    for (int index = 0; index < count; ++index) {
        const Date at = addingSeconds(start, static_cast<double>(index + 1) / intervalsPerSecond);
        model.ingest(interval(levelAt(index, count)), at);
    }
    for (const CueRecord& cue : cues(end))
        model.meter().addMarker(cue.markerLabel(), cue.start);
    model.qlab().simulate(QLabClientState::connected, QStringLiteral("Evening Show"), {});
}

} // namespace ostrel::SampleContent
