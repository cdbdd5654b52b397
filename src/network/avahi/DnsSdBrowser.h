#pragma once

// Browses one DNS-SD service type and resolves each service it finds, keeping the resolver while
// the service is announced, so that a changed TXT record is reported too. A service announced on
// several interfaces or protocols counts once, by name: added with its first announcement,
// removed with its last. Follows its client: it browses while the client runs, and after the
// daemon comes back it starts afresh, without reporting removals it could not see. Main thread
// only.
#include <avahi-client/lookup.h>

#include <deque>
#include <map>

#include <QObject>
#include <QString>
#include <QTimer>

#include "network/avahi/DnsSdClient.h"
#include "network/avahi/DnsSdService.h"

namespace ostrel {

class DnsSdBrowser : public QObject {
    Q_OBJECT

public:
    // Making or freeing a resolver is a blocking call to the daemon; in a burst of announcements
    // or withdrawals this many are made or freed at a time, one batch per event-loop turn, so
    // that the main thread stays responsive.
    static constexpr int resolversPerTurn = 8;

    DnsSdBrowser(DnsSdClient& client, QString type, QString domain = QStringLiteral("local"),
        QObject* parent = nullptr);
    ~DnsSdBrowser() override;

    void start();
    void stop();
    bool isStarted() const { return isStarted_; }
    // A browser is open on the daemon.
    bool isBrowsing() const { return browser_ != nullptr; }
    // A resolver of the service has not answered yet.
    bool isResolving(const QString& name) const;
    // Services announced now, by name.
    int serviceCount() const { return static_cast<int>(instanceCounts_.size()); }

signals:
    void serviceAdded(const QString& name);
    // Its first resolution, and each change of its record after that.
    void serviceResolved(const ostrel::DnsSdService& service);
    void serviceRemoved(const QString& name);
    void resolveFailed(const QString& name, const QString& error);
    // The daemon refused or ended the browse; the owner decides whether to try again.
    void failed(const QString& error);

private:
    struct Instance {
        QString name;
        AvahiIfIndex interface = AVAHI_IF_UNSPEC;
        AvahiProtocol protocol = AVAHI_PROTO_UNSPEC;
        AvahiServiceResolver* resolver = nullptr;
        bool isQueued = false;
        bool hasResolved = false;
    };

    static void browseCallback(AvahiServiceBrowser* browser, AvahiIfIndex interface,
        AvahiProtocol protocol, AvahiBrowserEvent event, const char* name, const char* type,
        const char* domain, AvahiLookupResultFlags flags, void* userdata);
    static void resolveCallback(AvahiServiceResolver* resolver, AvahiIfIndex interface,
        AvahiProtocol protocol, AvahiResolverEvent event, const char* name, const char* type,
        const char* domain, const char* hostName, const AvahiAddress* address, uint16_t port,
        AvahiStringList* txt, AvahiLookupResultFlags flags, void* userdata);

    void followClient();
    void openBrowser();
    void closeBrowser();
    void added(AvahiIfIndex interface, AvahiProtocol protocol, const char* name);
    void removed(AvahiIfIndex interface, AvahiProtocol protocol, const char* name);
    void resolve(Instance& instance);
    void resolveQueued();
    void retire(AvahiServiceResolver* resolver);

    DnsSdClient& client_;
    QByteArray type_;
    QByteArray domain_;
    bool isStarted_ = false;
    AvahiServiceBrowser* browser_ = nullptr;
    // By interface, protocol and name.
    std::map<QString, Instance> instances_;
    std::map<QString, int> instanceCounts_;
    std::deque<QString> resolveQueue_;
    // Resolvers of withdrawn services, still to be freed; their answers are ignored.
    std::deque<AvahiServiceResolver*> retired_;
    QTimer resolveTimer_;
};

} // namespace ostrel
