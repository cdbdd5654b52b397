#include "mics/MicMonitoringSettings.h"

namespace ostrel {

const Setting<bool> MicMonitoringSettings::monitoringEnabledKey {"micMonitoringEnabled", true};
const Setting<bool> MicMonitoringSettings::lowBatteryWarningsKey {"micLowBatteryWarnings", true};

MicMonitoringSettings::MicMonitoringSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      monitoringEnabled_(read(monitoringEnabledKey)),
      lowBatteryWarnings_(read(lowBatteryWarningsKey))
{
}

void MicMonitoringSettings::setMonitoringEnabled(bool value)
{
    assign(monitoringEnabled_, value, monitoringEnabledKey,
        &MicMonitoringSettings::monitoringEnabledChanged);
}

void MicMonitoringSettings::setLowBatteryWarnings(bool value)
{
    assign(lowBatteryWarnings_, value, lowBatteryWarningsKey,
        &MicMonitoringSettings::lowBatteryWarningsChanged);
}

} // namespace ostrel
