#include "dante/DanteSettings.h"

namespace ostrel {

const Setting<bool> DanteSettings::monitoringEnabledKey {"danteMonitoringEnabled", true};
const Setting<bool> DanteSettings::dropoutFlashKey {"danteDropoutFlash", true};

DanteSettings::DanteSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      monitoringEnabled_(read(monitoringEnabledKey)),
      dropoutFlash_(read(dropoutFlashKey))
{
}

void DanteSettings::setMonitoringEnabled(bool value)
{
    assign(
        monitoringEnabled_, value, monitoringEnabledKey, &DanteSettings::monitoringEnabledChanged);
}

void DanteSettings::setDropoutFlash(bool value)
{
    assign(dropoutFlash_, value, dropoutFlashKey, &DanteSettings::dropoutFlashChanged);
}

} // namespace ostrel
