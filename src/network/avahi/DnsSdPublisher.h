#pragma once

// Announces one service of this station over DNS-SD, renaming it ("Name #2") when another holds
// the name, and announcing it again whenever the daemon comes back. Main thread only.
#include <avahi-client/publish.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include "network/avahi/DnsSdClient.h"

namespace ostrel {

class DnsSdPublisher : public QObject {
    Q_OBJECT

public:
    explicit DnsSdPublisher(DnsSdClient& client, QObject* parent = nullptr);
    ~DnsSdPublisher() override;

    // Replaces what was published before. `txt` holds "key=value" strings.
    void publish(const QString& name, const QString& type, quint16 port, const QStringList& txt);
    void withdraw();

    bool isPublished() const { return isPublished_; }
    // The name in use, which a collision may have changed.
    QString name() const { return QString::fromUtf8(name_); }

signals:
    void published(const QString& name);
    void failed(const QString& error);

private:
    static void groupCallback(AvahiEntryGroup* group, AvahiEntryGroupState state, void* userdata);
    void followClient();
    void addService();
    void rename();
    void freeGroup();

    DnsSdClient& client_;
    QByteArray name_;
    QByteArray type_;
    quint16 port_ = 0;
    QStringList txt_;
    bool wantsPublished_ = false;
    bool isPublished_ = false;
    AvahiEntryGroup* group_ = nullptr;
};

} // namespace ostrel
