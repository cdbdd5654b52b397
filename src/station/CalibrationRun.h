#pragma once

// One calibration measurement: gathers the intervals of a calibrator's tone for a given time,
// reports progress about ten times a second and gives the collector's result at the end.
#include <functional>
#include <optional>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include "measurement/CalibrationCollector.h"
#include "measurement/MeasurementInterval.h"
#include "measurement/MeasurementSettings.h"

namespace ostrel {

class CalibrationRun : public QObject {
    Q_OBJECT

public:
    static constexpr int defaultTickMs = 100;

    // Seconds on a monotonic clock, from any origin; tests hand in their own.
    using Clock = std::function<double()>;
    using Progress = std::function<void(double fraction)>;
    using Completion = std::function<void(std::optional<CalibrationResult>)>;

    // The result is judged against the settings' calibrator reference level at the end.
    explicit CalibrationRun(const MeasurementSettings& settings, QObject* parent = nullptr);

    // Measures for `duration` seconds; the last progress call is exactly 1.0. A new measurement
    // ends the one before it.
    void measure(double duration, Progress progress, Completion completion);
    // Ends now with what the collector makes of what it has.
    void cancel();
    void add(const MeasurementInterval& interval);
    bool isMeasuring() const { return collector_.has_value(); }
    void setTick(int milliseconds) { tickMs_ = milliseconds; }
    void setClock(Clock clock) { clock_ = std::move(clock); }

private:
    void tick();
    void finish();

    const MeasurementSettings& settings_;
    std::optional<CalibrationCollector> collector_;
    QTimer timer_;
    int tickMs_ = defaultTickMs;
    Clock clock_;
    double started_ = 0.0;
    double duration_ = 0.0;
    Progress progress_;
    Completion completion_;
};

} // namespace ostrel
