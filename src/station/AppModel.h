#pragma once

// The centre of the running station: owns one of every subsystem, decides the mode, starts
// everything in a fixed order, routes each measurement interval to its consumers and joins the
// subsystems' outputs to each other in one place (`wire`). Each subsystem is a feature class that
// owns its driver and applies its own settings group. Main thread only.
#include <memory>
#include <optional>

#include <QObject>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTimer>

#include "audio/AudioCaptureBackend.h"
#include "common/Date.h"
#include "crew/CrewLink.h"
#include "measurement/FrequencyWeighting.h"
#include "measurement/MicrophoneCorrection.h"
#include "model/MeterModel.h"
#include "network/MirrorState.h"
#include "qlab/TimecodeRate.h"
#include "station/AppSettings.h"
#include "station/AppUpdater.h"
#include "station/CalibrationRun.h"
#include "station/DanteWatch.h"
#include "station/DemoSimulator.h"
#include "station/LiveInput.h"
#include "station/QLabLink.h"
#include "station/RadioMics.h"
#include "station/ShowSessions.h"

namespace ostrel {

class AppModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(Mode mode READ mode CONSTANT)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(bool hasError READ hasError NOTIFY errorMessageChanged)
    Q_PROPERTY(ostrel::AppSettings* settings READ settingsObject CONSTANT)
    Q_PROPERTY(ostrel::MeterModel* meter READ meterObject CONSTANT)
    Q_PROPERTY(ostrel::AudioInput* audio READ audioObject CONSTANT)
    Q_PROPERTY(ostrel::LiveInput* input READ inputObject CONSTANT)
    Q_PROPERTY(ostrel::QLabClient* qlab READ qlabObject CONSTANT)
    Q_PROPERTY(ostrel::SessionStore* sessions READ sessionsObject CONSTANT)
    Q_PROPERTY(ostrel::AppUpdater* updater READ updaterObject CONSTANT)
    Q_PROPERTY(bool isPresentingNewSession READ isPresentingNewSession WRITE setPresentingNewSession
            NOTIFY isPresentingNewSessionChanged)
    Q_PROPERTY(bool hasActiveSession READ hasActiveSession NOTIFY sessionChanged)
    Q_PROPERTY(bool canExport READ canExport NOTIFY sessionChanged)
    Q_PROPERTY(QString currentCueLabel READ currentCueLabelText NOTIFY currentCueLabelChanged)
    Q_PROPERTY(ostrel::MicMonitor* mics READ micsObject CONSTANT)
    Q_PROPERTY(bool showsMicAlerts READ showsMicAlerts NOTIFY showsMicAlertsChanged)
    Q_PROPERTY(ostrel::DanteMonitor* dante READ danteObject CONSTANT)
    Q_PROPERTY(bool showsDante READ showsDante NOTIFY showsDanteChanged)
    Q_PROPERTY(QString sessionsFolder READ sessionsFolder CONSTANT)
    Q_PROPERTY(ostrel::CrewLink* crew READ crewObject CONSTANT)
    Q_PROPERTY(bool isSecondary READ isSecondary NOTIFY isSecondaryChanged)
    Q_PROPERTY(bool isMirrorLive READ isMirrorLive NOTIFY isMirrorLiveChanged)
    Q_PROPERTY(QString displayWeighting READ displayWeighting NOTIFY displayMeterSettingChanged)
    Q_PROPERTY(QString displayResponse READ displayResponse NOTIFY displayMeterSettingChanged)
    Q_PROPERTY(bool displayIsCalibrated READ displayIsCalibrated NOTIFY displayIsCalibratedChanged)
    Q_PROPERTY(
        int timecodeFallbackRate READ timecodeFallbackRateValue NOTIFY timecodeFallbackRateChanged)
    // The radio mics' names, mirrored or local: the quick alerts' mic picker.
    Q_PROPERTY(QStringList micNames READ micNames NOTIFY micNamesChanged)

public:
    enum class Mode { live, demo, inert };
    Q_ENUM(Mode)

    // A test host sets this key; such a process never touches hardware or files.
    static constexpr const char* inertEnvironmentKey = "XCTestConfigurationFilePath";
    static constexpr const char* demoArgument = "-demo";

    // The environment test comes first: a test host run with "-demo" is inert.
    static Mode currentMode(const QStringList& arguments, const QProcessEnvironment& environment);
    static Mode currentMode();

    // `audioBackend` is the capture system of the live input (Qt Multimedia in the station);
    // `qlabTimings` the QLab client's waits, shortened only by tests; `sessionsFolder` where
    // shows are kept, the station's "Sessions" folder unless a test says otherwise; `micTimings`
    // the receiver links' waits.
    AppModel(Mode mode, std::unique_ptr<AppSettings> settings,
        std::unique_ptr<AudioCaptureBackend> audioBackend, QLabClient::Timings qlabTimings = {},
        QString sessionsFolder = QString(), MicMonitor::Timings micTimings = {},
        CrewLink::Timings crewTimings = {}, QObject* parent = nullptr);
    ~AppModel() override;

    Mode mode() const { return mode_; }
    AppSettings& settings() { return *settings_; }
    MeterModel& meter() { return meter_; }
    LiveInput& input() { return input_; }
    AudioInput& audio() { return input_.audio(); }
    QLabLink& qlabLink() { return qlab_; }
    QLabClient& qlab() { return qlab_.client(); }
    AppUpdater& updater() { return updater_; }
    // The simulator that stands in for microphone and QLab in demo mode; none otherwise.
    DemoSimulator* simulator() { return simulator_.get(); }
    // Tests set the date every subsystem takes; the system clock otherwise.
    void setClock(std::function<Date()> clock);
    Date currentDate() const { return clock_(); }
    ShowSessions& shows() { return sessions_; }
    const QString& sessionsFolder() const { return sessions_.sessionsFolder(); }
    SessionStore& sessions() { return sessions_.store(); }
    RadioMics& radioMics() { return mics_; }
    MicMonitor& mics() { return mics_.monitor(); }
    // Whether the main screen shows the mic alert list.
    bool showsMicAlerts() const;
    CalibrationRun& calibration() { return calibration_; }
    DanteWatch& danteWatch() { return dante_; }
    DanteMonitor& dante() { return dante_.monitor(); }
    // The Dante panels are on: the station watches for Dante devices.
    bool showsDante() const;
    bool hasStarted() const { return hasStarted_; }

    // The crew: a primary publishes, a secondary mirrors with no inputs of its own.
    CrewLink& crew() { return crew_; }
    void applyCrewSettings();
    void ingestMirrored(const MeasurementInterval& interval);
    void applyMirror(const MirrorState& state);
    MirrorState mirrorState() const;
    const std::optional<MirrorState>& mirror() const { return mirror_; }
    bool isSecondary() const { return crew_.role() == CrewRole::secondary; }
    // Off a secondary always; on one, while the primary's levels arrive.
    bool isMirrorLive() const { return !isSecondary() || crew_.isReceiving(); }
    struct MeterSettingText {
        QString weighting;
        QString response;
    };
    // The corner of the meter: the primary's setting on a secondary, the station's own otherwise.
    MeterSettingText displayMeterSetting() const;
    bool displayIsCalibrated() const;
    TimecodeRate timecodeFallbackRate() const;
    QStringList micNames() const { return mics_.monitor().channelNames(); }
    // How often a primary publishes its state; tests shorten it before `start`.
    void setMirrorShareInterval(std::chrono::milliseconds interval);

    // Idempotent: the first call sets everything going.
    void start();
    void ingest(const MeasurementInterval& interval, Date at);
    // The "Try Again" of the audio notice.
    void restartAudio();

    // Measures a calibrator tone for `duration` seconds (see `CalibrationRun`).
    void measureCalibration(
        double duration, CalibrationRun::Progress progress, CalibrationRun::Completion completion);
    // The calibration assistant is up: a calibrator's steady tone is what the feedback detector
    // looks for.
    void setCalibrating(bool active);
    void applyCalibration(double offset);

    QString errorMessage() const { return errorMessage_.value_or(QString()); }
    bool hasError() const { return errorMessage_.has_value(); }
    void setErrorMessage(std::optional<QString> message);

    // The show flow. `requestNewSession` raises the new-session sheet unless a show runs; the
    // sheet calls `startSession`; `endSession` ends the show and raises its summary.
    void requestNewSession();
    Q_INVOKABLE void startSession(const QString& name);
    Q_INVOKABLE void endSession();
    // The one road by which a session ends, also taken when the station quits.
    std::optional<ShowSession> finishSession();
    void selectRecording(const ShowSession& session);
    bool canExport() const { return sessions_.canExport(); }
    bool hasActiveSession() const { return sessions_.store().activeSession().has_value(); }
    // The first running cue's number and name, for chat stamps.
    std::optional<QString> currentCueLabel() const;

    bool isPresentingNewSession() const { return isPresentingNewSession_; }
    void setPresentingNewSession(bool presenting);
    const std::optional<ShowSession>& presentedSummary() const { return presentedSummary_; }
    void setPresentedSummary(std::optional<ShowSession> summary);
    const std::optional<QString>& selectedRecordingName() const { return selectedRecordingName_; }
    const std::optional<QString>& recordingWarning() const { return sessions_.recordingWarning(); }

    // Called when the application is about to quit: a running session ends and is archived.
    void applicationWillTerminate();

    // For tests: how often the measurement group has been applied.
    int measurementApplyCount() const { return measurementApplies_; }

signals:
    void errorMessageChanged();
    void isPresentingNewSessionChanged();
    void presentedSummaryChanged();
    void selectedRecordingNameChanged();
    void sessionChanged();
    void currentCueLabelChanged();
    void showsMicAlertsChanged();
    void showsDanteChanged();
    void isSecondaryChanged();
    void isMirrorLiveChanged();
    void displayMeterSettingChanged();
    void displayIsCalibratedChanged();
    void timecodeFallbackRateChanged();
    void micNamesChanged();
    void mirrorChanged();

private:
    AppSettings* settingsObject() { return settings_.get(); }
    MeterModel* meterObject() { return &meter_; }
    AudioInput* audioObject() { return &input_.audio(); }
    LiveInput* inputObject() { return &input_; }
    QLabClient* qlabObject() { return &qlab_.client(); }
    AppUpdater* updaterObject() { return &updater_; }
    SessionStore* sessionsObject() { return &sessions_.store(); }
    MicMonitor* micsObject() { return &mics_.monitor(); }
    DanteMonitor* danteObject() { return &dante_.monitor(); }
    CrewLink* crewObject() { return &crew_; }
    QString displayWeighting() const { return displayMeterSetting().weighting; }
    QString displayResponse() const { return displayMeterSetting().response; }
    int timecodeFallbackRateValue() const;
    void wireCrew();
    void becomeSecondary();
    void stopBeingSecondary();
    void setSuspendedInputs(bool suspended);
    void showDemoSamples();

    QString currentCueLabelText() const { return currentCueLabel().value_or(QString()); }
    void wire();
    void applyMeasurementSettings();
    void applyDisplaySettings();

    Mode mode_;
    // Every date the station takes; before the subsystems, which read it.
    std::function<Date()> clock_;
    std::unique_ptr<AppSettings> settings_;
    MeterModel meter_;
    LiveInput input_;
    QLabLink qlab_;
    ShowSessions sessions_;
    AppUpdater updater_;
    CalibrationRun calibration_;
    RadioMics mics_;
    DanteWatch dante_;
    CrewLink crew_;
    // The last state received on a secondary; kept while the link is down.
    std::optional<MirrorState> mirror_;
    bool wasSecondary_ = false;
    QTimer shareTimer_;
    // Stands in for the live input in demo mode.
    std::unique_ptr<DemoSimulator> simulator_;
    IntervalSource* source_;

    std::optional<QString> errorMessage_;
    bool isPresentingNewSession_ = false;
    std::optional<ShowSession> presentedSummary_;
    std::optional<QString> selectedRecordingName_;
    bool hasStarted_ = false;
    std::optional<FrequencyWeighting> appliedWeighting_;
    std::optional<MicrophoneCorrection> appliedCorrection_;
    int measurementApplies_ = 0;
};

} // namespace ostrel
