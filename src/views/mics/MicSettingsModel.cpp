#include "views/mics/MicSettingsModel.h"

#include <QVariantMap>

#include "views/components/Theme.h"

namespace ostrel {

MicSettingsModel::MicSettingsModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

QString MicSettingsModel::footer()
{
    return QStringLiteral(
        "Nothing is shown while mics are fine. A mic only counts as dropped out if it had signal "
        "first, so packs that are switched off aren't flagged. Ostrel Live only reads from "
        "receivers and works alongside WSM.");
}

int MicSettingsModel::problemColorRole()
{
    return static_cast<int>(Theme::Role::orange);
}

QString MicSettingsModel::title(const MicReceiver& receiver)
{
    return receiver.label.isEmpty() ? receiver.host : receiver.label;
}

QString MicSettingsModel::subtitle(const MicReceiver& receiver)
{
    return MicReceiverKinds::title(receiver.kind) + QStringLiteral(" \u00B7 ") + receiver.host;
}

void MicSettingsModel::setMonitoringEnabled(bool value)
{
    if (settings_) settings_->setMonitoringEnabled(value);
}

void MicSettingsModel::setLowBatteryWarnings(bool value)
{
    if (settings_) settings_->setLowBatteryWarnings(value);
}

void MicSettingsModel::removeReceiver(const QString& id)
{
    if (mics_) mics_->removeReceiver(QUuid::fromString(id));
}

void MicSettingsModel::attach()
{
    watch(mics_);
    watch(settings_);
    if (mics_) {
        track(connect(mics_, &MicMonitor::receiversChanged, this, &MicSettingsModel::refresh));
        track(connect(mics_, &MicMonitor::problemsChanged, this, &MicSettingsModel::refresh));
    }
    if (settings_) {
        for (auto signal : {&MicMonitoringSettings::monitoringEnabledChanged,
                 &MicMonitoringSettings::lowBatteryWarningsChanged}) {
            track(connect(settings_, signal, this, &MicSettingsModel::switchesChanged));
        }
    }
}

void MicSettingsModel::refresh()
{
    QVariantList rows;
    if (mics_) {
        for (const MicReceiver& receiver : mics_->receivers()) {
            const QString problem = mics_->problem(receiver.id);
            rows.append(QVariantMap {{QStringLiteral("id"), receiver.key()},
                {QStringLiteral("title"), title(receiver)},
                {QStringLiteral("subtitle"), subtitle(receiver)},
                {QStringLiteral("problem"), problem},
                {QStringLiteral("hasProblem"), !problem.isEmpty()}});
        }
    }
    emit switchesChanged();
    if (rows == rows_) return;
    rows_ = rows;
    emit receiversChanged();
}

} // namespace ostrel
