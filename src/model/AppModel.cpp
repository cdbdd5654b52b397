#include "model/AppModel.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>

namespace ostrel {

struct AppModel::ObservedGroup {
    std::function<void()> apply;
    bool pending = false;
};

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
      audio_(std::make_unique<AudioInput>(std::move(audioBackend))),
      meter_(std::make_unique<MeterModel>()),
      qlab_(std::make_unique<QLabClient>(
          qlabTimings, [] { return std::chrono::system_clock::now(); })),
      sessions_(std::make_unique<SessionStore>())
{
    QPointer<AppModel> self(this);
    audio_->onInterval = [self](const MeasurementInterval& interval) {
        if (self) self->ingest(interval, std::chrono::system_clock::now());
    };
    qlab_->onRunningCuesChanged = [self](const std::vector<QLabCue>& cues) {
        if (self) self->sessions_->updateRunningCues(cues, std::chrono::system_clock::now());
    };
    sessions_->onCueStarted = [self](const CueRecord& record) {
        if (self)
            self->meter_->addMarker(
                record.number.isEmpty() ? record.name : record.number, record.start);
    };

    calibrationTimer_.setSingleShot(false);
    connect(&calibrationTimer_, &QTimer::timeout, this, [this] {
        // A monotonic clock: a wall-clock step mid-measurement must not shorten or stretch it.
        const double elapsed = static_cast<double>(calibrationStart_.elapsed()) / 1000.0;
        const double fraction = std::min(elapsed / calibrationDuration_, 1.0);
        if (calibrationProgress_) calibrationProgress_(fraction);
        if (elapsed >= calibrationDuration_) finishCalibration();
    });

    if (mode_ == Mode::inert) {
        // A test host's shows are never written to the user's archive.
        sessions_->setArchivesSessions(false);
        return;
    }
    if (auto* application = QCoreApplication::instance()) {
        connect(
            application, &QCoreApplication::aboutToQuit, this, &AppModel::applicationWillTerminate);
    }
    // After construction has returned, so that the first window can appear first.
    QTimer::singleShot(0, this, [self] {
        if (self) self->start();
    });
}

AppModel::~AppModel() = default;

template <typename... Signals>
void AppModel::observe(std::function<void()> apply, Signals... changes)
{
    auto group = std::make_shared<ObservedGroup>();
    group->apply = std::move(apply);
    (connect(settings_.get(), changes, this, [this, group] { schedule(group); }), ...);
}

void AppModel::schedule(const std::shared_ptr<ObservedGroup>& group)
{
    // Several assignments in one turn of the event loop apply once, and see the new values.
    if (group->pending) return;
    group->pending = true;
    QMetaObject::invokeMethod(
        this,
        [group] {
            group->pending = false;
            group->apply();
        },
        Qt::QueuedConnection);
}

void AppModel::start()
{
    if (hasStarted_) return;
    hasStarted_ = true;

    applyMeasurementSettings();
    applyDisplaySettings();
    observe([this] { applyMeasurementSettings(); }, &AppSettings::weightingChanged,
        &AppSettings::responseChanged, &AppSettings::calibrationOffsetChanged,
        &AppSettings::microphoneCorrectionChanged);
    observe([this] { applyDisplaySettings(); }, &AppSettings::graphDurationChanged,
        &AppSettings::appearanceChanged, &AppSettings::recordsLevelHistoryChanged,
        &AppSettings::feedbackWarningEnabledChanged);

    if (mode_ != Mode::live) return;
    audio_->start(settings_->inputDeviceUID(), settings_->inputChannel());
    applyQLabSettings();
    observe([this] { applyInputSettings(); }, &AppSettings::inputDeviceUIDChanged,
        &AppSettings::inputChannelChanged);
    observe([this] { applyQLabSettings(); }, &AppSettings::qlabEnabledChanged,
        &AppSettings::qlabHostChanged, &AppSettings::qlabPortChanged,
        &AppSettings::qlabPasscodeChanged, &AppSettings::qlabWorkspaceChanged);
}

void AppModel::ingest(const MeasurementInterval& interval, Date at)
{
    meter_->ingest(interval, at);
    sessions_->ingest(interval, at);
    if (calibrationCollector_) calibrationCollector_->add(interval);
}

void AppModel::restartAudio()
{
    if (mode_ != Mode::live) return;
    audio_->start(settings_->inputDeviceUID(), settings_->inputChannel());
}

void AppModel::applyQLabSettings()
{
    ++qlabApplies_;
    // Spaces and tabs only: a line end in the field is the user's to see, not ours to hide.
    QString host = settings_->qlabHost();
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype first = 0;
    qsizetype end = host.size();
    while (first < end && isBlank(host[first]))
        ++first;
    while (end > first && isBlank(host[end - 1]))
        --end;
    host = host.mid(first, end - first);
    const auto port = static_cast<quint16>(std::clamp<qint64>(settings_->qlabPort(), 0, 65535));
    qlab_->configure(settings_->qlabEnabled(), host, port, settings_->qlabPasscode(),
        settings_->qlabWorkspace());
}

void AppModel::applyMeasurementSettings()
{
    ++measurementApplies_;
    audio_->pipeline()->configure(settings_->weighting(), settings_->response(),
        settings_->calibrationOffset(), settings_->microphoneCorrection());
    sessions_->setMeterSetting(settings_->meterSetting());
    const auto& correction = settings_->microphoneCorrection();
    sessions_->setMicrophoneCorrectionName(
        correction ? std::optional(QString::fromStdString(correction->name())) : std::nullopt);
    // Peak, Max and Leq measured under one curve mean nothing under another; a change of
    // response or offset alone keeps them, and so does the first run at start.
    if (appliedWeighting_
        && (settings_->weighting() != *appliedWeighting_
            || settings_->microphoneCorrection() != appliedCorrection_)) {
        meter_->resetStatistics();
    }
    appliedWeighting_ = settings_->weighting();
    appliedCorrection_ = settings_->microphoneCorrection();
}

void AppModel::applyDisplaySettings()
{
    meter_->setGraphDuration(settings_->graphDuration());
    meter_->setDetectsFeedback(settings_->feedbackWarningEnabled());
    sessions_->setRecordsLevelHistory(settings_->recordsLevelHistory());
}

void AppModel::applyInputSettings()
{
    ++inputApplies_;
    audio_->select(settings_->inputDeviceUID(), settings_->inputChannel());
    meter_->resetAll();
}

void AppModel::measureCalibration(
    double duration, CalibrationProgress progress, CalibrationCompletion completion)
{
    if (calibrationCollector_) cancelCalibration();
    calibrationCollector_.emplace();
    calibrationStart_.start();
    calibrationDuration_ = std::max(duration, 0.0);
    calibrationProgress_ = std::move(progress);
    calibrationCompletion_ = std::move(completion);
    calibrationTimer_.start(calibrationTick_);
}

void AppModel::cancelCalibration()
{
    if (calibrationCollector_) finishCalibration();
}

void AppModel::finishCalibration()
{
    calibrationTimer_.stop();
    std::optional<CalibrationResult> result;
    if (calibrationCollector_)
        result = calibrationCollector_->result(settings_->calibratorReferenceLevel());
    calibrationCollector_.reset();
    auto completion = std::move(calibrationCompletion_);
    calibrationCompletion_ = nullptr;
    calibrationProgress_ = nullptr;
    if (completion) completion(result);
}

void AppModel::setCalibrating(bool active)
{
    // A calibrator's steady tone is exactly what the feedback detector looks for.
    meter_->setSuspendsFeedbackDetection(active);
}

void AppModel::applyCalibration(double offset)
{
    settings_->setCalibrationOffset(offset);
    settings_->setCalibrationDate(std::chrono::system_clock::now());
    meter_->resetStatistics();
}

void AppModel::setErrorMessage(std::optional<QString> message)
{
    if (message == errorMessage_) return;
    errorMessage_ = std::move(message);
    emit errorMessageChanged();
}

void AppModel::applicationWillTerminate()
{
    // Sessions are ended here once they exist; nothing else is stopped one by one.
}

} // namespace ostrel
