#pragma once

// The table of the Dante Devices window: every device, offline first, with its status, name,
// model, manufacturer, address and firmware; the empty states; and "Remove Offline Devices".
#include <QAbstractListModel>
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "dante/DanteSettings.h"
#include "dante/monitor/DanteMonitor.h"

namespace ostrel {

class DanteDevicesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DanteMonitor* dante READ dante WRITE setDante NOTIFY danteChanged)
    Q_PROPERTY(
        ostrel::DanteSettings* settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY contentChanged)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY contentChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY contentChanged)
    Q_PROPERTY(QString emptySymbol READ emptySymbol NOTIFY contentChanged)
    Q_PROPERTY(bool canRemoveOffline READ canRemoveOffline NOTIFY contentChanged)
    Q_PROPERTY(QStringList headers READ headers CONSTANT)
    Q_PROPERTY(QList<int> columnWidths READ columnWidths CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString removeTitle READ removeTitle CONSTANT)
    Q_PROPERTY(QString removeSymbol READ removeSymbol CONSTANT)
    Q_PROPERTY(QString removeHelp READ removeHelp CONSTANT)

public:
    enum Role {
        statusRole = Qt::UserRole + 1,
        isOnlineRole,
        nameRole,
        modelRole,
        manufacturerRole,
        addressRole,
        firmwareRole,
        dotColorRole,
        statusColorRole
    };
    Q_ENUM(Role)

    explicit DanteDevicesModel(QObject* parent = nullptr);

    DanteMonitor* dante() const { return dante_.data(); }
    void setDante(DanteMonitor* value);
    DanteSettings* settings() const { return settings_.data(); }
    void setSettings(DanteSettings* value);

    bool isEmpty() const { return rows_.empty(); }
    QString emptyTitle() const;
    QString emptyText() const;
    QString emptySymbol() const;
    bool canRemoveOffline() const;
    QStringList headers() const;
    // The ideal widths of the columns, in points.
    QList<int> columnWidths() const { return {90, 160, 110, 140, 120, 90}; }
    QString title() const { return QStringLiteral("Dante Devices"); }
    QString removeTitle() const { return QStringLiteral("Remove Offline Devices"); }
    QString removeSymbol() const { return QStringLiteral("minus.circle"); }
    QString removeHelp() const
    {
        return QStringLiteral("Forget devices that are no longer on the network");
    }

    Q_INVOKABLE void removeOfflineDevices();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void danteChanged();
    void settingsChanged();
    void contentChanged();

private:
    void reload();

    QPointer<DanteMonitor> dante_;
    QPointer<DanteSettings> settings_;
    std::vector<QMetaObject::Connection> connections_;
    std::vector<DanteDevice> rows_;
};

} // namespace ostrel
