#include "station/AppModel.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>
#include <chrono>

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
    QObject* parent)
    : QObject(parent),
      mode_(mode),
      settings_(std::move(settings)),
      input_(std::move(audioBackend), settings_->input(), &now),
      qlab_(settings_->qlab(), qlabTimings, &now),
      sessions_(settings_->sessions(), settings_->measurement()),
      calibration_(settings_->measurement()),
      source_(&input_)
{
    wire();

    if (mode_ == Mode::inert) {
        // A test host's shows are never written to the user's archive.
        sessions_.store().setArchivesSessions(false);
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

    if (mode_ != Mode::live) return;
    source_->start();
    qlab_.start();
}

void AppModel::ingest(const MeasurementInterval& interval, Date at)
{
    meter_.ingest(interval, at);
    sessions_.ingest(interval, at);
    calibration_.add(interval);
}

void AppModel::restartAudio()
{
    if (mode_ != Mode::live) return;
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
    settings_->measurement().setCalibrationDate(now());
    meter_.resetStatistics();
}

void AppModel::setErrorMessage(std::optional<QString> message)
{
    if (message == errorMessage_) return;
    errorMessage_ = std::move(message);
    emit errorMessageChanged();
}

void AppModel::applicationWillTerminate()
{
    // Sessions are ended here once the show flow exists; nothing else is stopped one by one.
}

} // namespace ostrel
