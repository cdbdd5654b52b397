#include "app/SampleContent.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "measurement/MeasurementInterval.h"
#include "measurement/SPLMath.h"
#include "measurement/Spectrum.h"
#include "measurement/SpectrumBand.h"

namespace ostrel::SampleContent {

namespace {

constexpr int intervalsPerSecond = 10;
constexpr int seconds = 60;
constexpr double sampleRate = 48000.0;

// Speech around 250 Hz to 3 kHz falling off either side, with a music cue's low end and a
// violin's line that moves with time; the fine bands ripple so the spectrogram has texture.
Spectrum spectrum(double level, double t)
{
    Spectrum value;
    const auto shape = [level, t](double frequency) {
        const double octaves = std::log2(frequency / 700.0);
        const double speech = level - 14.0 - 5.0 * octaves * octaves;
        const double bass
            = t > 36.0 ? level - 12.0 - 6.0 * std::abs(std::log2(frequency / 80.0)) : -200.0;
        const double melody = 880.0 * std::pow(2.0, std::sin(t * 0.4) * 0.5);
        const double line = level - 10.0 - 40.0 * std::abs(std::log2(frequency / melody));
        return std::max({speech, bass, line, level - 75.0});
    };
    for (std::size_t band = 0; band < SpectrumBand::thirdOctaveCount; ++band)
        value.bandLevels[band] = shape(SpectrumBand::thirdOctave()[band].center);
    for (std::size_t band = 0; band < SpectrumBand::fineCount; ++band) {
        const double ripple = 2.5 * std::sin(static_cast<double>(band) * 0.9 + t * 3.1);
        // Fine bands share the power of a third-octave band eight ways.
        value.fineBandLevels[band] = shape(SpectrumBand::fine()[band].center) - 9.0 + ripple;
    }
    value.dominantFrequency = 880.0 * std::pow(2.0, std::sin(t * 0.4) * 0.5);
    return value;
}

MeasurementInterval interval(double level, double t)
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
    value.spectrum = spectrum(level, t);
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

std::vector<MeasurementInterval> intervals()
{
    constexpr int count = seconds * intervalsPerSecond;
    std::vector<MeasurementInterval> list;
    list.reserve(count);
    for (int index = 0; index < count; ++index)
        list.push_back(
            interval(levelAt(index, count), static_cast<double>(index) / intervalsPerSecond));
    return list;
}

void feed(AppModel& model, Date end)
{
    const std::vector<MeasurementInterval> minute = intervals();
    const Date start = addingSeconds(end, -static_cast<double>(seconds));
    for (std::size_t index = 0; index < minute.size(); ++index) {
        const Date at = addingSeconds(start, static_cast<double>(index + 1) / intervalsPerSecond);
        model.ingest(minute[index], at);
    }
    for (const CueRecord& cue : cues(end))
        model.meter().addMarker(cue.markerLabel(), cue.start);
    model.qlab().simulate(QLabClientState::connected, QStringLiteral("Evening Show"), {});
}

} // namespace ostrel::SampleContent
