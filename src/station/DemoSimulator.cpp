#include "station/DemoSimulator.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace ostrel {

namespace {

constexpr double maximumDrift = 6.0;
constexpr double driftStepLimit = 0.8;

} // namespace

const std::vector<DemoSimulator::ScriptedCue>& DemoSimulator::script()
{
    static const std::vector<ScriptedCue> cues {
        {"1", "House to Half", "Light", 6.0, -52.0, 120.0},
        {"5", "Preshow Music Fade", "Fade", 8.0, -38.0, 440.0},
        {"12", "Thunder Ambience", "Audio", 18.0, -24.0, 55.0},
        {"14", "Rain Loop", "Audio", 14.0, -33.0, 3200.0},
        {"21", "Act One Finale", "Audio", 16.0, -18.0, 220.0},
    };
    return cues;
}

DemoSimulator::DemoSimulator(
    QLabClient& qlab, AudioRecorder recordAudio, Options options, QObject* parent)
    : QObject(parent),
      qlab_(qlab),
      recordAudio_(std::move(recordAudio)),
      generator_(sampleRate, SignalGenerator::demoSeed),
      processor_(sampleRate, FrequencyWeighting::a, TimeWeighting::fast, 0.0),
      analyzer_(sampleRate)
{
    setOptions(std::move(options));
    connect(&ticker_, &QTimer::timeout, this, &DemoSimulator::tick);
}

void DemoSimulator::setOptions(Options options)
{
    options_ = std::move(options);
    if (!options_.clock) options_.clock = [] { return std::chrono::system_clock::now(); };
    if (!options_.driftStep) {
        options_.driftStep = [engine = std::mt19937_64(std::random_device {}())]() mutable {
            return std::uniform_real_distribution<double>(-driftStepLimit, driftStepLimit)(engine);
        };
    }
    ticker_.setInterval(options_.tick);
}

void DemoSimulator::start()
{
    ticker_.stop();
    index_ = 0;
    drift_ = 0.0;
    cueStartedAt_ = options_.clock();
    present(index_, cueStartedAt_);
    ticker_.start();
}

void DemoSimulator::stop()
{
    ticker_.stop();
}

void DemoSimulator::configure(const MeasurementSettings& settings)
{
    processor_.setWeighting(settings.weighting());
    processor_.setResponse(settings.response());
    processor_.setCalibrationOffset(settings.calibrationOffset());
}

void DemoSimulator::tick()
{
    const Date now = options_.clock();
    const auto& cues = script();
    if (secondsBetween(cueStartedAt_, now) > cues[index_].duration) {
        index_ = (index_ + 1) % cues.size();
        cueStartedAt_ = now;
        present(index_, cueStartedAt_);
    }
    // The room wanders slowly, never more than a few decibels from the script.
    drift_ = std::clamp(drift_ + std::clamp(options_.driftStep(), -driftStepLimit, driftStepLimit),
        -maximumDrift, maximumDrift);
    const ScriptedCue& cue = cues[index_];
    const double amplitude = std::pow(10.0, (cue.level + drift_) / 20.0);
    // Noise first: both draw on the generator's state, and the order keeps the show repeatable.
    std::vector<float> samples = generator_.whiteNoise(amplitude * 0.6, blockSeconds);
    const std::vector<float> sine = generator_.sine(cue.tone, amplitude, blockSeconds);
    samples.resize(std::min(samples.size(), sine.size()));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] += sine[i];

    processor_.process(samples);
    analyzer_.append(samples);
    MeasurementInterval interval = processor_.takeInterval();
    interval.spectrum = analyzer_.analyze(processor_.calibrationOffset());
    if (recordAudio_) recordAudio_(samples, sampleRate, interval, now);
    if (onInterval) onInterval(interval, now);
}

void DemoSimulator::present(std::size_t index, Date startedAt)
{
    const auto& cues = script();
    if (index >= cues.size()) {
        std::fprintf(stderr, "DemoSimulator: no scripted cue %zu\n", index);
        std::abort();
    }
    const ScriptedCue& row = cues[index];
    QLabCue cue;
    cue.id = QStringLiteral("demo-") + QString::fromUtf8(row.number);
    cue.number = QString::fromUtf8(row.number);
    cue.name = QString::fromUtf8(row.name);
    cue.type = QString::fromUtf8(row.type);
    cue.isPaused = false;
    cue.actionElapsed = 0.0;
    cue.duration = row.duration;
    cue.sampledAt = startedAt;
    cue.startedAt = startedAt;
    qlab_.simulate(
        QLabClientState::connected, QStringLiteral("Demo Show"), {cue, timecodeCue(startedAt)});
}

QLabCue DemoSimulator::timecodeCue(Date now)
{
    // Made once: its start stands still, so the readout counts on through every loop.
    if (!timecodeCue_) {
        QLabCue cue;
        cue.id = QStringLiteral("demo-timecode");
        cue.number = QStringLiteral("TC");
        cue.name = QStringLiteral("Show Timecode");
        cue.type = QStringLiteral("Timecode");
        cue.isPaused = false;
        cue.actionElapsed = 0.0;
        cue.sampledAt = now;
        cue.startedAt = addingSeconds(now, -1.0);
        cue.timecodeStart = QStringLiteral("01:00:00:00");
        cue.timecodeRateIndex = 1;
        cue.timecodeOutputType = 1;
        timecodeCue_ = cue;
    }
    return *timecodeCue_;
}

} // namespace ostrel
