#include "station/ShowSessions.h"

#include "recording/DiskSessionFiles.h"

namespace ostrel {

ShowSessions::ShowSessions(
    const SessionSettings& settings, const MeasurementSettings& measurement, QObject* parent)
    : QObject(parent),
      settings_(settings),
      measurement_(measurement),
      store_(std::make_shared<DiskSessionFiles>())
{
}

void ShowSessions::start()
{
    applyMeasurementSettings();
    applySettings();
    if (isFollowing_) return;
    isFollowing_ = true;
    connect(&settings_, &SettingsGroup::changed, this, &ShowSessions::applySettings);
    connect(&measurement_, &SettingsGroup::changed, this, &ShowSessions::applyMeasurementSettings);
}

void ShowSessions::ingest(const MeasurementInterval& interval, Date at)
{
    store_.ingest(interval, at);
}

void ShowSessions::updateRunningCues(const std::vector<QLabCue>& cues, Date at)
{
    store_.updateRunningCues(cues, at);
}

void ShowSessions::applySettings()
{
    store_.setRecordsLevelHistory(settings_.recordsLevelHistory());
}

void ShowSessions::applyMeasurementSettings()
{
    store_.setMeterSetting(measurement_.meterSetting());
    const auto& correction = measurement_.microphoneCorrection();
    store_.setMicrophoneCorrectionName(
        correction ? std::optional(QString::fromStdString(correction->name())) : std::nullopt);
}

} // namespace ostrel
