#include "station/AppModel.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>
#include <chrono>

#include "recording/DiskSessionFiles.h"

namespace ostrel {

namespace {

Date now()
{
    return std::chrono::system_clock::now();
}

} // namespace

AppModel::Mode AppModel::currentMode(
    const QStringList& arguments, const QProcessEnvironment& environment)
{
    if (environment.contains(QString::fromLatin1(inertEnvironmentKey))) return Mode::inert;
    // The exact argument only: "--demo" or "-demo-mode" are not it.
    if (arguments.contains(QString::fromLatin1(demoArgument))) return Mode::demo;
    return Mode::live;
}

AppModel::Mode AppModel::currentMode()
{
    return currentMode(QCoreApplication::arguments(), QProcessEnvironment::systemEnvironment());
}

AppModel::AppModel(Mode mode, std::unique_ptr<AppSettings> settings,
    std::unique_ptr<AudioCaptureBackend> audioBackend, QLabClient::Timings qlabTimings,
    QString sessionsFolder, MicMonitor::Timings micTimings, CrewLink::Timings crewTimings,
    QObject* parent)
    : QObject(parent),
      mode_(mode),
      clock_(&now),
      settings_(std::move(settings)),
      input_(std::move(audioBackend), settings_->input(), [this] { return clock_(); }),
      qlab_(settings_->qlab(), qlabTimings, [this] { return clock_(); }),
      sessions_(settings_->sessions(), settings_->measurement(), input_.audio().pipeline(),
          std::make_shared<DiskSessionFiles>(), std::move(sessionsFolder)),
      updater_(mode == Mode::live, settings_->updates()),
      calibration_(settings_->measurement()),
      // An inert station keeps no receivers of its own.
      mics_(settings_->mics(), mode == Mode::inert ? nullptr : &settings_->store(), micTimings,
          [this] { return clock_(); }),
      dante_(settings_->dante()),
      crew_(crewTimings, [this] { return clock_(); }),
      source_(&input_)
{
    if (mode_ == Mode::demo) {
        DemoSimulator::Options options;
        options.clock = [this] { return clock_(); };
        simulator_ = std::make_unique<DemoSimulator>(
            qlab_.client(),
            [this](std::span<const float> samples, double rate, const MeasurementInterval& interval,
                Date at) { sessions_.recordDemoAudio(samples, rate, interval, at); },
            options);
        source_ = simulator_.get();
    }
    wire();

    if (mode_ == Mode::inert) {
        // A test host's shows are never written to the user's archive, nor recorded.
        sessions_.setKeepsFiles(false);
        return;
    }
    if (auto* application = QCoreApplication::instance()) {
        connect(
            application, &QCoreApplication::aboutToQuit, this, &AppModel::applicationWillTerminate);
    }
    // After construction has returned, so that the first window can appear first.
    QPointer<AppModel> self(this);
    QTimer::singleShot(0, this, [self] {
        if (self) self->start();
    });
}

AppModel::~AppModel() = default;

void AppModel::setClock(std::function<Date()> clock)
{
    clock_ = clock ? std::move(clock) : std::function<Date()>(&now);
}

// Every route between subsystems. Each callback is owned by a member, so none outlives the model.
void AppModel::wire()
{
    source_->onInterval
        = [this](const MeasurementInterval& interval, Date at) { ingest(interval, at); };
    qlab_.onRunningCuesChanged = [this](const std::vector<QLabCue>& cues, Date at) {
        sessions_.updateRunningCues(cues, at);
    };
    sessions_.store().onCueStarted
        = [this](const CueRecord& record) { meter_.addMarker(record.markerLabel(), record.start); };
    // Another input: what was measured belongs to the one before.
    connect(&input_, &LiveInput::inputChanged, &meter_, &MeterModel::resetAll);
    connect(&sessions_, &ShowSessions::failed, this,
        [this](const QString& message) { setErrorMessage(message); });
    connect(
        &sessions_.store(), &SessionStore::activeSessionChanged, this, &AppModel::sessionChanged);
    connect(&sessions_.store(), &SessionStore::lastSessionChanged, this, &AppModel::sessionChanged);
    connect(
        &qlab_.client(), &QLabClient::runningCuesChanged, this, &AppModel::currentCueLabelChanged);
    connect(&settings_->mics(), &MicMonitoringSettings::monitoringEnabledChanged, this,
        &AppModel::showsMicAlertsChanged);
    connect(&settings_->dante(), &DanteSettings::monitoringEnabledChanged, this,
        &AppModel::showsDanteChanged);
    wireCrew();
}

void AppModel::start()
{
    if (hasStarted_) return;
    hasStarted_ = true;

    applyMeasurementSettings();
    applyDisplaySettings();
    sessions_.start();
    connect(&settings_->measurement(), &SettingsGroup::changed, this,
        &AppModel::applyMeasurementSettings);
    connect(&settings_->display(), &SettingsGroup::changed, this, &AppModel::applyDisplaySettings);

    if (mode_ == Mode::demo) {
        source_->start();
        showDemoSamples();
    }
    if (mode_ == Mode::live) {
        source_->start();
        qlab_.start();
        mics_.start();
        dante_.start();
    }
    // A test host's station never joins a crew.
    if (mode_ == Mode::inert) return;
    applyCrewSettings();
    connect(&settings_->crew(), &SettingsGroup::changed, this, &AppModel::applyCrewSettings);
    shareTimer_.start();
}

void AppModel::showDemoSamples()
{
    // The sample of the demo: one mic that dropped out.
    mics_.monitor().simulate({MicIssue {QStringLiteral("demo#3"), QStringLiteral("SCROOGE"),
                                 MicIssueKind::dropout, clock_()}},
        std::nullopt);
    dante_.monitor().simulate(DanteWatch::sampleRoster(true, clock_()));
}

void AppModel::ingest(const MeasurementInterval& interval, Date at)
{
    // On a secondary only the primary's intervals count.
    if (isSecondary()) return;
    meter_.ingest(interval, at);
    sessions_.ingest(interval, at);
    calibration_.add(interval);
    crew_.share(interval);
}

void AppModel::restartAudio()
{
    if (mode_ != Mode::live || isSecondary()) return;
    input_.restart();
}

void AppModel::applyMeasurementSettings()
{
    ++measurementApplies_;
    const MeasurementSettings& measurement = settings_->measurement();
    source_->configure(measurement);
    // Peak, Max and Leq measured under one curve mean nothing under another; a change of
    // response or offset alone keeps them, and so does the first run at start.
    if (appliedWeighting_
        && (measurement.weighting() != *appliedWeighting_
            || measurement.microphoneCorrection() != appliedCorrection_)) {
        meter_.resetStatistics();
    }
    appliedWeighting_ = measurement.weighting();
    appliedCorrection_ = measurement.microphoneCorrection();
}

void AppModel::applyDisplaySettings()
{
    meter_.setGraphDuration(settings_->display().graphDuration());
    meter_.setDetectsFeedback(settings_->display().feedbackWarningEnabled());
}

void AppModel::measureCalibration(
    double duration, CalibrationRun::Progress progress, CalibrationRun::Completion completion)
{
    calibration_.measure(duration, std::move(progress), std::move(completion));
}

void AppModel::setCalibrating(bool active)
{
    meter_.setSuspendsFeedbackDetection(active);
}

void AppModel::applyCalibration(double offset)
{
    settings_->measurement().setCalibrationOffset(offset);
    settings_->measurement().setCalibrationDate(clock_());
    meter_.resetStatistics();
}

void AppModel::setErrorMessage(std::optional<QString> message)
{
    if (message == errorMessage_) return;
    errorMessage_ = std::move(message);
    emit errorMessageChanged();
}

void AppModel::requestNewSession()
{
    // Only the primary records: a secondary's command stays enabled and does nothing.
    if (hasActiveSession() || isSecondary()) return;
    setPresentingNewSession(true);
}

void AppModel::startSession(const QString& name)
{
    sessions_.startSession(name, clock_());
    meter_.resetStatistics();
}

void AppModel::endSession()
{
    setPresentedSummary(finishSession());
}

std::optional<ShowSession> AppModel::finishSession()
{
    return sessions_.finishSession(clock_());
}

void AppModel::selectRecording(const ShowSession& session)
{
    if (session.recordingFolderName == selectedRecordingName_) return;
    selectedRecordingName_ = session.recordingFolderName;
    emit selectedRecordingNameChanged();
}

std::optional<QString> AppModel::currentCueLabel() const
{
    const auto& cues = qlab_.client().runningCues();
    if (cues.empty()) return std::nullopt;
    QStringList parts;
    for (const QString& part : {cues.front().number, cues.front().displayName()})
        if (!part.isEmpty()) parts.append(part);
    return parts.join(u' ');
}

void AppModel::setPresentingNewSession(bool presenting)
{
    if (presenting == isPresentingNewSession_) return;
    isPresentingNewSession_ = presenting;
    emit isPresentingNewSessionChanged();
}

void AppModel::setPresentedSummary(std::optional<ShowSession> summary)
{
    if (summary == presentedSummary_) return;
    presentedSummary_ = std::move(summary);
    emit presentedSummaryChanged();
}

void AppModel::applicationWillTerminate()
{
    // A quit never waits for a show, and shows no summary; nothing else is stopped one by one.
    finishSession();
}

} // namespace ostrel
