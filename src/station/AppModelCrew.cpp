// The crew side of the central model: a primary publishes its readings and state, a secondary
// pushes what it receives into the same objects the screens already read.
#include <algorithm>

#include "station/AppModel.h"

namespace ostrel {

namespace {

constexpr std::size_t mirroredEventLimit = 50;

} // namespace

void AppModel::wireCrew()
{
    crew_.onInterval = [this](const MeasurementInterval& interval) { ingestMirrored(interval); };
    crew_.onState = [this](const MirrorState& state) { applyMirror(state); };
    shareTimer_.setInterval(std::chrono::milliseconds(500));
    connect(&shareTimer_, &QTimer::timeout, this, [this] {
        if (crew_.role() == CrewRole::primary) crew_.share(mirrorState());
    });
    connect(&crew_, &CrewLink::roleChanged, this, [this] {
        emit isSecondaryChanged();
        emit isMirrorLiveChanged();
        emit displayMeterSettingChanged();
        emit displayIsCalibratedChanged();
        emit timecodeFallbackRateChanged();
        emit showsDanteChanged();
        emit showsMicAlertsChanged();
    });
    connect(&crew_, &CrewLink::isReceivingChanged, this, &AppModel::isMirrorLiveChanged);
    connect(&mics_.monitor(), &MicMonitor::channelNamesChanged, this, &AppModel::micNamesChanged);
    MeasurementSettings& measurement = settings_->measurement();
    connect(&measurement, &MeasurementSettings::meterSettingChanged, this,
        &AppModel::displayMeterSettingChanged);
    connect(&measurement, &MeasurementSettings::calibrationDateChanged, this,
        &AppModel::displayIsCalibratedChanged);
    connect(&settings_->qlab(), &QLabSettings::timecodeFallbackRateChanged, this,
        &AppModel::timecodeFallbackRateChanged);
}

void AppModel::setMirrorShareInterval(std::chrono::milliseconds interval)
{
    shareTimer_.setInterval(interval);
}

void AppModel::applyCrewSettings()
{
    const CrewSettings& settings = settings_->crew();
    crew_.configure(settings.role(), settings.stationName(), settings.primary());
    const bool nowSecondary = isSecondary();
    // A new name or preferred primary, or standalone to primary and back: the inputs run on.
    if (nowSecondary == wasSecondary_) return;
    wasSecondary_ = nowSecondary;
    meter_.resetAll();
    if (nowSecondary)
        becomeSecondary();
    else
        stopBeingSecondary();
}

void AppModel::setSuspendedInputs(bool suspended)
{
    input_.setSuspended(suspended);
    qlab_.setSuspended(suspended);
    mics_.setSuspended(suspended);
    dante_.setSuspended(suspended);
}

void AppModel::becomeSecondary()
{
    setSuspendedInputs(true);
    input_.audio().stop();
    if (simulator_) simulator_->stop();
    qlab_.client().simulate(QLabClient::State::connecting, std::nullopt, {});
    dante_.monitor().simulate(DanteRoster {});
    mics_.monitor().simulate({}, QStringList());
}

void AppModel::stopBeingSecondary()
{
    setSuspendedInputs(false);
    if (mirror_) {
        mirror_.reset();
        emit mirrorChanged();
    }
    emit displayMeterSettingChanged();
    emit displayIsCalibratedChanged();
    emit timecodeFallbackRateChanged();
    dante_.monitor().simulate(DanteRoster {});
    mics_.monitor().simulate({}, QStringList());
    if (mode_ == Mode::live) {
        input_.restart();
        // The client was disabled by the mirror, so the same settings connect it again.
        qlab_.applySettings();
        dante_.applySettings();
        mics_.applySettings();
    } else if (mode_ == Mode::demo) {
        if (simulator_) simulator_->start();
        showDemoSamples();
    }
}

void AppModel::ingestMirrored(const MeasurementInterval& interval)
{
    if (!isSecondary()) return;
    meter_.ingest(interval, clock_());
    sessions_.ingest(interval, clock_());
}

void AppModel::applyMirror(const MirrorState& state)
{
    if (!isSecondary()) return;
    const std::optional<MirrorState> previous = std::exchange(mirror_, state);
    meter_.restoreStatistics(state.statistics);
    if (!previous || previous->cues != state.cues || previous->qlabState != state.qlabState
        || previous->workspace != state.workspace) {
        qlab_.client().simulate(state.qlabState, state.workspace, state.cues);
    }
    if (!previous || previous->danteDevices != state.danteDevices
        || previous->danteEvents != state.danteEvents) {
        dante_.monitor().simulate(DanteRoster(state.danteDevices, state.danteEvents));
    }
    // Assigns only what differs, so a repeated state wakes nothing.
    mics_.monitor().simulate(state.micIssues, state.micNames);
    emit mirrorChanged();
    if (!previous || previous->meterSetting != state.meterSetting)
        emit displayMeterSettingChanged();
    if (!previous || previous->isCalibrated != state.isCalibrated)
        emit displayIsCalibratedChanged();
    if (!previous || previous->timecodeFallbackRate != state.timecodeFallbackRate)
        emit timecodeFallbackRateChanged();
    if (!previous || previous->showsDante != state.showsDante) emit showsDanteChanged();
    if (!previous || previous->showsMics != state.showsMics) emit showsMicAlertsChanged();
}

MirrorState AppModel::mirrorState() const
{
    MirrorState state;
    state.station = crew_.stationName();
    state.meterSetting = settings_->measurement().meterSetting();
    state.isCalibrated = settings_->measurement().isCalibrated();
    state.statistics = meter_.statistics();
    const QLabClient& qlab = qlab_.client();
    state.qlabState = qlab.state();
    state.workspace = qlab.workspaceName();
    state.cues = qlab.runningCues();
    if (const auto& timecode = qlab.timecodeCue()) state.cues.push_back(*timecode);
    state.timecodeFallbackRate = TimecodeRates::rawValue(settings_->qlab().timecodeFallbackRate());
    state.showsDante = showsDante();
    const DanteMonitor& dante = dante_.monitor();
    state.danteDevices = dante.roster().sortedDevices();
    const auto& events = dante.events();
    state.danteEvents.assign(events.begin(),
        events.begin() + static_cast<std::ptrdiff_t>(std::min(events.size(), mirroredEventLimit)));
    state.showsMics = showsMicAlerts();
    state.micIssues = mics_.monitor().issues();
    state.micNames = mics_.monitor().channelNames();
    return state;
}

AppModel::MeterSettingText AppModel::displayMeterSetting() const
{
    if (isSecondary() && mirror_) {
        const QString separator = QStringLiteral(" / ");
        const qsizetype at = mirror_->meterSetting.indexOf(separator);
        if (at < 0) return {mirror_->meterSetting, QString()};
        return {mirror_->meterSetting.left(at),
            mirror_->meterSetting.mid(at + separator.size()).section(separator, 0, 0).toUpper()};
    }
    const MeasurementSettings& measurement = settings_->measurement();
    const std::string_view letter = rawValue(measurement.weighting());
    return {QString::fromUtf8(letter.data(), static_cast<qsizetype>(letter.size())),
        measurement.response() == TimeWeighting::fast ? QStringLiteral("FAST")
                                                      : QStringLiteral("SLOW")};
}

bool AppModel::displayIsCalibrated() const
{
    if (!isSecondary()) return settings_->measurement().isCalibrated();
    // A secondary waiting for its primary shows no warning about calibration.
    return mirror_ ? mirror_->isCalibrated : true;
}

bool AppModel::showsDante() const
{
    if (!isSecondary()) return settings_->dante().monitoringEnabled();
    return mirror_ && mirror_->showsDante;
}

bool AppModel::showsMicAlerts() const
{
    if (!isSecondary()) return settings_->mics().monitoringEnabled();
    return mirror_ && mirror_->showsMics;
}

TimecodeRate AppModel::timecodeFallbackRate() const
{
    if (isSecondary() && mirror_) {
        if (const auto rate = TimecodeRates::fromRawValue(mirror_->timecodeFallbackRate))
            return *rate;
    }
    return settings_->qlab().timecodeFallbackRate();
}

int AppModel::timecodeFallbackRateValue() const
{
    return TimecodeRates::rawValue(timecodeFallbackRate());
}

} // namespace ostrel
