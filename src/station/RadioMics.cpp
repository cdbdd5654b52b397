#include "station/RadioMics.h"

namespace ostrel {

RadioMics::RadioMics(MicMonitoringSettings& settings, SettingsStore* store,
    MicMonitor::Timings timings, MicMonitor::Clock clock, QObject* parent)
    : QObject(parent), settings_(settings), monitor_(store, keychain_, timings, std::move(clock))
{
}

void RadioMics::start()
{
    applySettings();
    if (isFollowing_) return;
    isFollowing_ = true;
    connect(&settings_, &SettingsGroup::changed, this, &RadioMics::applySettings);
}

void RadioMics::applySettings()
{
    if (isSuspended_) return;
    ++applies_;
    monitor_.setWarnsAboutLowBattery(settings_.lowBatteryWarnings());
    monitor_.setEnabled(settings_.monitoringEnabled());
}

} // namespace ostrel
