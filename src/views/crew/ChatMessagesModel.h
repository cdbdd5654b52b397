#pragma once

// The chat's messages as the panel lists them, oldest first: each bubble's side, heading, symbol,
// colours, its "Got It" button and who has seen it.
#include <QAbstractListModel>
#include <QPointer>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>
#include <vector>

#include "crew/CrewLink.h"

namespace ostrel {

class ChatMessagesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY contentChanged)
    Q_PROPERTY(int count READ count NOTIFY contentChanged)
    // Changes whenever the newest message does, so the list can scroll to it.
    Q_PROPERTY(QString lastMessageId READ lastMessageId NOTIFY contentChanged)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)

public:
    enum Role {
        messageIdRole = Qt::UserRole + 1,
        isMineRole,
        senderTextRole,
        timeTextRole,
        cueTextRole,
        textRole,
        symbolRole,
        isUrgentRole,
        accessibleNameRole,
        backgroundRoleRole,
        backgroundOpacityRole,
        usesWhiteTextRole,
        showsGotItRole,
        seenByTextRole,
    };
    Q_ENUM(Role)

    explicit ChatMessagesModel(QObject* parent = nullptr);

    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value);

    // One bubble as `station` sees it, keyed by the role names.
    static QVariantMap bubble(const ChatMessage& message, const QString& station);

    bool isEmpty() const { return rows_.empty(); }
    int count() const { return static_cast<int>(rows_.size()); }
    QString lastMessageId() const;
    QString emptyText() const { return QStringLiteral("Messages to the whole crew appear here."); }
    // The row's values by role name; empty past the end.
    QVariantMap row(int index) const;

    Q_INVOKABLE void acknowledge(const QString& id);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void crewChanged();
    void contentChanged();

private:
    void reload();

    QPointer<CrewLink> crew_;
    std::vector<QMetaObject::Connection> connections_;
    std::vector<QVariantMap> rows_;
};

} // namespace ostrel
