#include "exposure/ExposureSettings.h"

#include <algorithm>

#include "settings/SettingText.h"

namespace ostrel {

namespace {

using KindText = RawTextSetting<ExposureProfileKind, &ExposureProfileKinds::fromRawValue,
    &ExposureProfileKinds::rawValue>;

} // namespace

const Setting<ExposureProfileKind> ExposureSettings::profileKindKey {
    "exposureProfile", ExposureProfileKind::who, &KindText::parse, &KindText::format};
const Setting<double> ExposureSettings::customMinutesKey {"exposureCustomMinutes", 15.0,
    &SettingText<double>::parse, &SettingText<double>::format, &ExposureSettings::clampedMinutes};
const Setting<double> ExposureSettings::customLimitKey {"exposureCustomLimit", 100.0};
const Setting<double> ExposureSettings::customMarginKey {"exposureCustomMargin", 3.0,
    &SettingText<double>::parse, &SettingText<double>::format, &ExposureSettings::clampedMargin};
const Setting<double> ExposureSettings::customPeakLimitKey {"exposureCustomPeakLimit", 140.0};

ExposureSettings::ExposureSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      profileKind_(read(profileKindKey)),
      customMinutes_(read(customMinutesKey)),
      customLimit_(read(customLimitKey)),
      customMargin_(read(customMarginKey)),
      customPeakLimit_(read(customPeakLimitKey))
{
}

double ExposureSettings::clampedMinutes(double value)
{
    return std::clamp(value, 1.0, 60.0);
}

double ExposureSettings::clampedMargin(double value)
{
    return std::clamp(value, 0.0, 20.0);
}

void ExposureSettings::setProfileKind(ExposureProfileKind value)
{
    assign(profileKind_, value, profileKindKey, &ExposureSettings::profileKindChanged);
}

void ExposureSettings::setCustomMinutes(double value)
{
    assign(customMinutes_, value, customMinutesKey, &ExposureSettings::customMinutesChanged);
}

void ExposureSettings::setCustomLimit(double value)
{
    assign(customLimit_, value, customLimitKey, &ExposureSettings::customLimitChanged);
}

void ExposureSettings::setCustomMargin(double value)
{
    assign(customMargin_, value, customMarginKey, &ExposureSettings::customMarginChanged);
}

void ExposureSettings::setCustomPeakLimit(double value)
{
    assign(customPeakLimit_, value, customPeakLimitKey, &ExposureSettings::customPeakLimitChanged);
}

ExposureProfile ExposureSettings::profile() const
{
    if (profileKind_ != ExposureProfileKind::custom) return ExposureProfile::builtIn(profileKind_);
    return ExposureProfile::custom(customMinutes_, customLimit_, customMargin_, customPeakLimit_);
}

QString ExposureSettings::profileName() const
{
    return QString::fromLatin1(ExposureProfileKinds::rawValue(profileKind_));
}

void ExposureSettings::setProfileName(const QString& name)
{
    if (const auto kind = ExposureProfileKinds::fromRawValue(name.toStdString()))
        setProfileKind(*kind);
}

} // namespace ostrel
