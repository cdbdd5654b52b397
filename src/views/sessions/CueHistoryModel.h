#pragma once

// The cues that have finished playing, newest first, as the rows of the Cue History window.
#include <QAbstractListModel>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "sessions/SessionStore.h"

namespace ostrel {

class CueHistoryModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        ostrel::SessionStore* sessions READ sessions WRITE setSessions NOTIFY sessionsChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY isEmptyChanged)
    Q_PROPERTY(QString emptyTitle READ emptyTitle CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)
    Q_PROPERTY(QString emptySymbol READ emptySymbol CONSTANT)
    Q_PROPERTY(QStringList headers READ headers CONSTANT)
    Q_PROPERTY(QList<int> columnWidths READ columnWidths CONSTANT)

public:
    enum Role {
        numberRole = Qt::UserRole + 1,
        nameRole,
        startedRole,
        durationRole,
        peakRole,
        leqRole
    };
    Q_ENUM(Role)

    explicit CueHistoryModel(QObject* parent = nullptr);

    SessionStore* sessions() const { return sessions_.data(); }
    void setSessions(SessionStore* value);

    bool isEmpty() const { return rows_.empty(); }
    QString emptyTitle() const { return QStringLiteral("No Cues Yet"); }
    QString emptyText() const
    {
        return QStringLiteral("Cues appear here when they finish playing in QLab.");
    }
    QString emptySymbol() const { return QStringLiteral("list.bullet"); }
    QStringList headers() const;
    // The ideal widths of the columns, in points.
    QList<int> columnWidths() const { return {50, 220, 80, 70, 70, 70}; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // One row's texts, in column order.
    static QStringList texts(const CueRecord& record);

signals:
    void sessionsChanged();
    void isEmptyChanged();

private:
    void reload();

    QPointer<SessionStore> sessions_;
    QMetaObject::Connection historyConnection_;
    std::vector<QStringList> rows_;
};

} // namespace ostrel
