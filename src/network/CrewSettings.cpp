#include "network/CrewSettings.h"

#include "settings/SettingText.h"

namespace ostrel {

namespace {

using RoleText = RawTextSetting<CrewRole, &CrewRoles::fromRawValue, &CrewRoles::rawValue>;

} // namespace

const Setting<CrewRole> CrewSettings::roleKey {
    "crewRole", CrewRole::standalone, &RoleText::parse, &RoleText::format};
const Setting<QString> CrewSettings::stationNameKey {"stationName", QString()};
const Setting<QString> CrewSettings::primaryKey {"crewPrimary", QString()};

CrewSettings::CrewSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      role_(read(roleKey)),
      stationName_(read(stationNameKey)),
      primary_(read(primaryKey))
{
}

void CrewSettings::setRole(CrewRole value)
{
    assign(role_, value, roleKey, &CrewSettings::roleChanged);
}

void CrewSettings::setStationName(const QString& value)
{
    assign(stationName_, value, stationNameKey, &CrewSettings::stationNameChanged);
}

void CrewSettings::setPrimary(const QString& value)
{
    assign(primary_, value, primaryKey, &CrewSettings::primaryChanged);
}

QString CrewSettings::roleText() const
{
    return QString::fromLatin1(CrewRoles::rawValue(role_));
}

void CrewSettings::setRoleText(const QString& raw)
{
    if (const auto role = CrewRoles::fromRawValue(raw.toStdString())) setRole(*role);
}

} // namespace ostrel
