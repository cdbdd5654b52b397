#include "views/sessions/CueHistoryModel.h"

#include "views/sessions/SessionText.h"

namespace ostrel {

CueHistoryModel::CueHistoryModel(QObject* parent) : QAbstractListModel(parent) { }

void CueHistoryModel::setSessions(SessionStore* value)
{
    if (value == sessions_) return;
    disconnect(historyConnection_);
    sessions_ = value;
    if (value) {
        historyConnection_
            = connect(value, &SessionStore::historyChanged, this, &CueHistoryModel::reload);
    }
    reload();
    emit sessionsChanged();
}

QStringList CueHistoryModel::headers() const
{
    return {QStringLiteral("Cue"), QStringLiteral("Name"), QStringLiteral("Started"),
        QStringLiteral("Duration"), QStringLiteral("Peak"), QStringLiteral("Leq")};
}

QStringList CueHistoryModel::texts(const CueRecord& record)
{
    return {record.number, record.name, SessionText::time(record.start),
        SessionText::duration(record.duration(record.end.value_or(record.start))),
        SessionText::decibels(record.statistics.peak()),
        SessionText::decibels(record.statistics.leq())};
}

int CueHistoryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant CueHistoryModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const int column = role - numberRole;
    if (column < 0 || column > 5) return {};
    return rows_[static_cast<size_t>(index.row())].at(column);
}

QHash<int, QByteArray> CueHistoryModel::roleNames() const
{
    return {{numberRole, "number"}, {nameRole, "name"}, {startedRole, "started"},
        {durationRole, "duration"}, {peakRole, "peak"}, {leqRole, "leq"}};
}

void CueHistoryModel::reload()
{
    const bool wasEmpty = rows_.empty();
    beginResetModel();
    rows_.clear();
    // The store keeps its history newest first already.
    if (sessions_) {
        for (const CueRecord& record : sessions_->history())
            rows_.push_back(texts(record));
    }
    endResetModel();
    if (wasEmpty != rows_.empty()) emit isEmptyChanged();
}

} // namespace ostrel
