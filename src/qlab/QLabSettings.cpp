#include "qlab/QLabSettings.h"

namespace ostrel {

namespace {

std::optional<TimecodeRate> rateFromRaw(long long raw)
{
    return TimecodeRates::fromRawValue(raw);
}

int rateToRaw(TimecodeRate rate)
{
    return TimecodeRates::rawValue(rate);
}

// Raw values 0 to 7 in the order of the rates; any other number gives the default.
using RateNumber = RawNumberSetting<TimecodeRate, long long, &rateFromRaw, &rateToRaw>;

} // namespace

const Setting<bool> QLabSettings::enabledKey {"qlabEnabled", true};
const Setting<QString> QLabSettings::hostKey {"qlabHost", QStringLiteral("localhost")};
const Setting<qint64> QLabSettings::portKey {"qlabPort", 53000};
const Setting<QString> QLabSettings::passcodeKey {"qlabPasscode", QString()};
const Setting<QString> QLabSettings::workspaceKey {"qlabWorkspace", QString()};
const Setting<TimecodeRate> QLabSettings::timecodeFallbackRateKey {
    "timecodeFallbackRate", TimecodeRate::fps25, &RateNumber::parse, &RateNumber::format};

QLabSettings::QLabSettings(SettingsStore& store, QObject* parent)
    : SettingsGroup(store, parent),
      enabled_(read(enabledKey)),
      host_(read(hostKey)),
      port_(read(portKey)),
      passcode_(read(passcodeKey)),
      workspace_(read(workspaceKey)),
      timecodeFallbackRate_(read(timecodeFallbackRateKey))
{
}

void QLabSettings::setEnabled(bool value)
{
    assign(enabled_, value, enabledKey, &QLabSettings::enabledChanged);
}

void QLabSettings::setHost(const QString& value)
{
    assign(host_, value, hostKey, &QLabSettings::hostChanged);
}

void QLabSettings::setPort(qint64 value)
{
    assign(port_, value, portKey, &QLabSettings::portChanged);
}

void QLabSettings::setPasscode(const QString& value)
{
    assign(passcode_, value, passcodeKey, &QLabSettings::passcodeChanged);
}

void QLabSettings::setWorkspace(const QString& value)
{
    assign(workspace_, value, workspaceKey, &QLabSettings::workspaceChanged);
}

void QLabSettings::setTimecodeFallbackRate(TimecodeRate value)
{
    assign(timecodeFallbackRate_, value, timecodeFallbackRateKey,
        &QLabSettings::timecodeFallbackRateChanged);
}

} // namespace ostrel
