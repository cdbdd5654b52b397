#pragma once

// The centre of the running station: owns one of every subsystem, decides the mode, starts
// everything in a fixed order, routes each measurement interval to its consumers and turns every
// settings change into a call on the subsystem concerned. Main thread only.
//
// Subsystems that join later (Dante, mics, crew, updater, the recorder) are wired here as they
// land; until then the routes that would reach them simply end.
#include <functional>
#include <memory>
#include <optional>

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTimer>

#include "audio/AudioCaptureBackend.h"
#include "audio/AudioInput.h"
#include "common/Date.h"
#include "measurement/CalibrationCollector.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/MicrophoneCorrection.h"
#include "model/AppSettings.h"
#include "model/MeterModel.h"
#include "model/sessions/SessionStore.h"
#include "qlab/client/QLabClient.h"

namespace ostrel {

class AppModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(Mode mode READ mode CONSTANT)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(bool hasError READ hasError NOTIFY errorMessageChanged)

public:
    enum class Mode { live, demo, inert };
    Q_ENUM(Mode)

    // A test host sets this key; such a process never touches hardware or files.
    static constexpr const char* inertEnvironmentKey = "XCTestConfigurationFilePath";
    static constexpr const char* demoArgument = "-demo";
    static constexpr int calibrationTickMs = 100;

    // The environment test comes first: a test host run with "-demo" is inert.
    static Mode currentMode(const QStringList& arguments, const QProcessEnvironment& environment);
    static Mode currentMode();

    // `audioBackend` is the capture system of the live input (Qt Multimedia in the station);
    // `qlabTimings` the QLab client's waits, shortened only by tests.
    AppModel(Mode mode, std::unique_ptr<AppSettings> settings,
        std::unique_ptr<AudioCaptureBackend> audioBackend, QLabClient::Timings qlabTimings = {},
        QObject* parent = nullptr);
    ~AppModel() override;

    Mode mode() const { return mode_; }
    AppSettings& settings() { return *settings_; }
    AudioInput& audio() { return *audio_; }
    MeterModel& meter() { return *meter_; }
    QLabClient& qlab() { return *qlab_; }
    SessionStore& sessions() { return *sessions_; }
    bool hasStarted() const { return hasStarted_; }

    // Idempotent: the first call sets everything going.
    void start();
    void ingest(const MeasurementInterval& interval, Date at);
    // The "Try Again" of the audio notice.
    void restartAudio();
    // Takes the QLab settings to the client: the host trimmed, the port clamped to what a TCP
    // port can be.
    void applyQLabSettings();

    using CalibrationProgress = std::function<void(double fraction)>;
    using CalibrationCompletion = std::function<void(std::optional<CalibrationResult>)>;
    // Measures a calibrator tone for `duration` seconds; progress about ten times a second, the
    // last call exactly 1.0. Cancelling gives what the collector makes of what it has.
    void measureCalibration(
        double duration, CalibrationProgress progress, CalibrationCompletion completion);
    void cancelCalibration();
    bool isMeasuringCalibration() const { return calibrationCollector_.has_value(); }
    void setCalibrating(bool active);
    void applyCalibration(double offset);

    QString errorMessage() const { return errorMessage_.value_or(QString()); }
    bool hasError() const { return errorMessage_.has_value(); }
    void setErrorMessage(std::optional<QString> message);

    // Called when the application is about to quit: a running session will be ended here.
    void applicationWillTerminate();

    // For tests: how often the measurement, input and QLab groups have been applied.
    int measurementApplyCount() const { return measurementApplies_; }
    int inputApplyCount() const { return inputApplies_; }
    int qlabApplyCount() const { return qlabApplies_; }
    void setCalibrationTick(int milliseconds) { calibrationTick_ = milliseconds; }

signals:
    void errorMessageChanged();

private:
    struct ObservedGroup;

    template <typename... Signals> void observe(std::function<void()> apply, Signals... changes);
    void schedule(const std::shared_ptr<ObservedGroup>& group);

    void applyMeasurementSettings();
    void applyDisplaySettings();
    void applyInputSettings();
    void finishCalibration();

    Mode mode_;
    std::unique_ptr<AppSettings> settings_;
    std::unique_ptr<AudioInput> audio_;
    std::unique_ptr<MeterModel> meter_;
    std::unique_ptr<QLabClient> qlab_;
    std::unique_ptr<SessionStore> sessions_;
    std::optional<QString> errorMessage_;
    bool hasStarted_ = false;
    std::optional<FrequencyWeighting> appliedWeighting_;
    std::optional<MicrophoneCorrection> appliedCorrection_;
    std::optional<CalibrationCollector> calibrationCollector_;
    QTimer calibrationTimer_;
    int calibrationTick_ = calibrationTickMs;
    QElapsedTimer calibrationStart_;
    double calibrationDuration_ = 0.0;
    CalibrationProgress calibrationProgress_;
    CalibrationCompletion calibrationCompletion_;
    int measurementApplies_ = 0;
    int inputApplies_ = 0;
    int qlabApplies_ = 0;
};

} // namespace ostrel
