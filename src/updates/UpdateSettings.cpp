#include "updates/UpdateSettings.h"

namespace ostrel {

const Setting<bool> UpdateSettings::checksAutomaticallyKey {"SUEnableAutomaticChecks", false};
const Setting<std::optional<Date>> UpdateSettings::lastCheckKey {"SULastCheckTime", std::nullopt};

UpdateSettings::UpdateSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      checksAutomatically_(read(checksAutomaticallyKey)),
      lastCheck_(read(lastCheckKey))
{
}

void UpdateSettings::setChecksAutomatically(bool value)
{
    assign(checksAutomatically_, value, checksAutomaticallyKey,
        &UpdateSettings::checksAutomaticallyChanged);
}

void UpdateSettings::setLastCheck(const std::optional<Date>& value)
{
    assign(lastCheck_, value, lastCheckKey, &UpdateSettings::lastCheckChanged);
}

} // namespace ostrel
