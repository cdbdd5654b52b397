#include "measurement/InputSettings.h"

namespace ostrel {

const Setting<QString> InputSettings::deviceUIDKey {"inputDeviceUID", QString()};
const Setting<qint64> InputSettings::channelKey {"inputChannel", 0};

InputSettings::InputSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent), deviceUID_(read(deviceUIDKey)), channel_(read(channelKey))
{
}

void InputSettings::setDeviceUID(const QString& value)
{
    assign(deviceUID_, value, deviceUIDKey, &InputSettings::deviceUIDChanged);
}

void InputSettings::setChannel(qint64 value)
{
    assign(channel_, value, channelKey, &InputSettings::channelChanged);
}

} // namespace ostrel
