#include "views/dante/DropoutLogModel.h"

#include <QDateTime>

#include "views/components/Theme.h"

namespace ostrel {

DropoutLogModel::DropoutLogModel(QObject* parent) : QAbstractListModel(parent) { }

void DropoutLogModel::setDante(DanteMonitor* value)
{
    if (dante_ == value) return;
    dante_ = value;
    for (const auto& connection : connections_)
        disconnect(connection);
    connections_.clear();
    if (dante_) {
        connections_.push_back(
            connect(dante_, &DanteMonitor::rosterChanged, this, &DropoutLogModel::reload));
        connections_.push_back(
            connect(dante_, &QObject::destroyed, this, &DropoutLogModel::reload));
    }
    reload();
    emit danteChanged();
}

QString DropoutLogModel::timeText(Date date)
{
    const auto milliseconds
        = std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds)
        .toLocalTime()
        .toString(QStringLiteral("HH:mm:ss"));
}

int DropoutLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(events_.size());
}

QVariant DropoutLogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= rowCount()) return {};
    const DanteEvent& event = events_[static_cast<std::size_t>(index.row())];
    const bool wentOffline = event.kind == DanteEvent::Kind::droppedOut;
    switch (role) {
    case symbolRole:
        return wentOffline ? QStringLiteral("exclamationmark.triangle.fill")
                           : QStringLiteral("checkmark.circle.fill");
    case colorRoleRole:
        return static_cast<int>(wentOffline ? Theme::Role::orange : Theme::Role::green);
    case deviceRole:
        return event.device;
    case textRole:
        return wentOffline ? QStringLiteral("went offline") : QStringLiteral("came back");
    case timeRole:
        return timeText(event.date);
    default:
        return {};
    }
}

QHash<int, QByteArray> DropoutLogModel::roleNames() const
{
    return {{symbolRole, "symbol"}, {colorRoleRole, "colorRole"}, {deviceRole, "device"},
        {textRole, "text"}, {timeRole, "time"}};
}

void DropoutLogModel::reload()
{
    beginResetModel();
    events_ = dante_ ? dante_->events() : std::vector<DanteEvent> {};
    endResetModel();
    emit contentChanged();
}

} // namespace ostrel
