#pragma once

// The dropout log under the Dante Devices table: each device that went offline or came back,
// newest first, with the time of day.
#include <QAbstractListModel>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "dante/monitor/DanteMonitor.h"

namespace ostrel {

class DropoutLogModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DanteMonitor* dante READ dante WRITE setDante NOTIFY danteChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY contentChanged)
    Q_PROPERTY(QString headline READ headline CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)

public:
    enum Role { symbolRole = Qt::UserRole + 1, colorRoleRole, deviceRole, textRole, timeRole };
    Q_ENUM(Role)

    explicit DropoutLogModel(QObject* parent = nullptr);

    DanteMonitor* dante() const { return dante_.data(); }
    void setDante(DanteMonitor* value);

    bool isEmpty() const { return events_.empty(); }
    QString headline() const { return QStringLiteral("Dropouts"); }
    QString emptyText() const { return QStringLiteral("No dropouts since Ostrel Live opened."); }

    // Hours, minutes and seconds in local time.
    static QString timeText(Date date);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void danteChanged();
    void contentChanged();

private:
    void reload();

    QPointer<DanteMonitor> dante_;
    std::vector<QMetaObject::Connection> connections_;
    std::vector<DanteEvent> events_;
};

} // namespace ostrel
