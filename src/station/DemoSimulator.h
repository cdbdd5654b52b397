#pragma once

// The whole station without a microphone, QLab or a network: a loop of five scripted cues,
// each tenth of a second synthesised as real sound and measured by a real processor and
// analyser, so that everything downstream runs as it does live.
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "common/Date.h"
#include "measurement/SPLProcessor.h"
#include "measurement/SignalGenerator.h"
#include "measurement/SpectrumAnalyzer.h"
#include "qlab/QLabCue.h"
#include "qlab/client/QLabClient.h"
#include "station/IntervalSource.h"

namespace ostrel {

// The simulator's pace and sources of time and chance; tests drive them.
struct DemoSimulatorOptions {
    std::chrono::milliseconds tick = std::chrono::milliseconds(100);
    std::function<Date()> clock; // the system clock when empty
    std::function<double()> driftStep; // uniform from -0.8 to 0.8 dB when empty
};

class DemoSimulator : public QObject, public IntervalSource {
    Q_OBJECT

public:
    struct ScriptedCue {
        const char* number;
        const char* name;
        const char* type;
        double duration; // seconds
        double level; // dBFS
        double tone; // Hz
    };
    static const std::vector<ScriptedCue>& script();

    static constexpr double sampleRate = 48000.0;
    static constexpr double blockSeconds = 0.1;

    // The block's sound, for a session that records: samples, rate, the interval they made and
    // the block's date.
    using AudioRecorder
        = std::function<void(std::span<const float>, double, const MeasurementInterval&, Date)>;

    using Options = DemoSimulatorOptions;

    DemoSimulator(QLabClient& qlab, AudioRecorder recordAudio, Options options = {},
        QObject* parent = nullptr);

    // Begins afresh at the first cue, which is on screen at once.
    void start() override;
    void stop() override;
    void configure(const MeasurementSettings& settings) override;

    // Before `start`: tests shorten the tick and drive the clock.
    void setOptions(Options options);

    bool isRunning() const { return ticker_.isActive(); }
    std::size_t cueIndex() const { return index_; }
    double drift() const { return drift_; }
    const SPLProcessor& processor() const { return processor_; }

private:
    void tick();
    void present(std::size_t index, Date startedAt);
    QLabCue timecodeCue(Date now);

    QLabClient& qlab_;
    AudioRecorder recordAudio_;
    Options options_;
    SignalGenerator generator_;
    SPLProcessor processor_;
    SpectrumAnalyzer analyzer_;
    QTimer ticker_;
    std::optional<QLabCue> timecodeCue_;
    std::size_t index_ = 0;
    Date cueStartedAt_;
    double drift_ = 0.0;
};

} // namespace ostrel
