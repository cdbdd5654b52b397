#include "views/dante/DanteDevicesModel.h"

#include <algorithm>

#include "views/components/Theme.h"

namespace ostrel {

DanteDevicesModel::DanteDevicesModel(QObject* parent) : QAbstractListModel(parent) { }

void DanteDevicesModel::setDante(DanteMonitor* value)
{
    if (dante_ == value) return;
    dante_ = value;
    for (const auto& connection : connections_)
        disconnect(connection);
    connections_.clear();
    if (dante_) {
        connections_.push_back(
            connect(dante_, &DanteMonitor::rosterChanged, this, &DanteDevicesModel::reload));
        connections_.push_back(
            connect(dante_, &QObject::destroyed, this, &DanteDevicesModel::reload));
    }
    reload();
    emit danteChanged();
}

void DanteDevicesModel::setSettings(DanteSettings* value)
{
    if (settings_ == value) return;
    if (settings_) disconnect(settings_, nullptr, this, nullptr);
    settings_ = value;
    if (settings_)
        connect(settings_, &DanteSettings::monitoringEnabledChanged, this,
            &DanteDevicesModel::contentChanged);
    emit settingsChanged();
    emit contentChanged();
}

QString DanteDevicesModel::emptyTitle() const
{
    if (settings_ && !settings_->monitoringEnabled())
        return QStringLiteral("Dante Monitoring Is Off");
    return QStringLiteral("No Dante Devices Found");
}

QString DanteDevicesModel::emptyText() const
{
    if (settings_ && !settings_->monitoringEnabled())
        return QStringLiteral("Turn it on in Settings \u203A QLab.");
    return QStringLiteral(
        "Dante devices on this computer's network will appear here automatically.");
}

QString DanteDevicesModel::emptySymbol() const
{
    if (settings_ && !settings_->monitoringEnabled()) return QStringLiteral("network.slash");
    return QStringLiteral("network");
}

bool DanteDevicesModel::canRemoveOffline() const
{
    return std::any_of(
        rows_.begin(), rows_.end(), [](const DanteDevice& device) { return !device.isOnline; });
}

QStringList DanteDevicesModel::headers() const
{
    return {QStringLiteral("Status"), QStringLiteral("Name"), QStringLiteral("Model"),
        QStringLiteral("Manufacturer"), QStringLiteral("IP Address"), QStringLiteral("Firmware")};
}

void DanteDevicesModel::removeOfflineDevices()
{
    if (dante_) dante_->removeOfflineDevices();
}

int DanteDevicesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant DanteDevicesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= rowCount()) return {};
    const DanteDevice& device = rows_[static_cast<std::size_t>(index.row())];
    // An absent detail shows an empty cell.
    switch (role) {
    case statusRole:
        return device.isOnline ? QStringLiteral("Online") : QStringLiteral("Offline");
    case isOnlineRole:
        return device.isOnline;
    case nameRole:
        return device.name();
    case modelRole:
        return device.model.value_or(QString());
    case manufacturerRole:
        return device.manufacturer.value_or(QString());
    case addressRole:
        return device.address.value_or(QString());
    case firmwareRole:
        return device.firmware.value_or(QString());
    case dotColorRole:
        return static_cast<int>(device.isOnline ? Theme::Role::green : Theme::Role::orange);
    case statusColorRole:
        return static_cast<int>(device.isOnline ? Theme::Role::primary : Theme::Role::orange);
    default:
        return {};
    }
}

QHash<int, QByteArray> DanteDevicesModel::roleNames() const
{
    return {{statusRole, "status"}, {isOnlineRole, "isOnline"}, {nameRole, "name"},
        {modelRole, "model"}, {manufacturerRole, "manufacturer"}, {addressRole, "address"},
        {firmwareRole, "firmware"}, {dotColorRole, "dotColorRole"},
        {statusColorRole, "statusColorRole"}};
}

void DanteDevicesModel::reload()
{
    beginResetModel();
    rows_ = dante_ ? dante_->devices() : std::vector<DanteDevice> {};
    endResetModel();
    emit contentChanged();
}

} // namespace ostrel
