#include "network/avahi/DnsSdBrowser.h"

#include <avahi-common/address.h>
#include <avahi-common/error.h>
#include <avahi-common/strlst.h>
#include <net/if.h>

#include <algorithm>

namespace ostrel {

namespace {

QString instanceKey(AvahiIfIndex interface, AvahiProtocol protocol, const char* name)
{
    return QString::number(interface) + u'|' + QString::number(protocol) + u'|'
        + QString::fromUtf8(name);
}

QString addressText(const AvahiAddress* address, AvahiIfIndex interface)
{
    if (!address) return {};
    char text[AVAHI_ADDRESS_STR_MAX];
    avahi_address_snprint(text, sizeof text, address);
    QString result = QString::fromLatin1(text);
    // A link-local IPv6 address is only reachable through its interface.
    if (address->proto == AVAHI_PROTO_INET6 && result.startsWith(u"fe80", Qt::CaseInsensitive)) {
        char interfaceName[IF_NAMESIZE];
        if (if_indextoname(static_cast<unsigned>(interface), interfaceName))
            result += u'%' + QString::fromLocal8Bit(interfaceName);
    }
    return result;
}

std::vector<QByteArray> txtStrings(AvahiStringList* list)
{
    std::vector<QByteArray> strings;
    for (AvahiStringList* item = list; item; item = avahi_string_list_get_next(item)) {
        strings.emplace_back(reinterpret_cast<const char*>(avahi_string_list_get_text(item)),
            static_cast<qsizetype>(avahi_string_list_get_size(item)));
    }
    // Avahi keeps the strings in reverse order of the record.
    std::reverse(strings.begin(), strings.end());
    return strings;
}

} // namespace

DnsSdBrowser::DnsSdBrowser(DnsSdClient& client, QString type, QString domain, QObject* parent)
    : QObject(parent), client_(client), type_(type.toUtf8()), domain_(domain.toUtf8())
{
    resolveTimer_.setInterval(0);
    connect(&resolveTimer_, &QTimer::timeout, this, &DnsSdBrowser::resolveQueued);
    connect(&client_, &DnsSdClient::stateChanged, this, &DnsSdBrowser::followClient);
    // Freed with the client: forget them without a word, the services are not known to be gone.
    connect(&client_, &DnsSdClient::aboutToReset, this, [this] {
        browser_ = nullptr;
        instances_.clear();
        instanceCounts_.clear();
        resolveQueue_.clear();
        retired_.clear();
        resolveTimer_.stop();
    });
}

DnsSdBrowser::~DnsSdBrowser()
{
    closeBrowser();
}

void DnsSdBrowser::start()
{
    if (isStarted_) return;
    isStarted_ = true;
    followClient();
}

void DnsSdBrowser::stop()
{
    isStarted_ = false;
    closeBrowser();
}

bool DnsSdBrowser::isResolving(const QString& name) const
{
    for (const auto& entry : instances_)
        if (entry.second.name == name
            && (entry.second.isQueued || (entry.second.resolver && !entry.second.hasResolved)))
            return true;
    return false;
}

void DnsSdBrowser::followClient()
{
    if (isStarted_ && client_.isRunning() && !browser_) openBrowser();
}

void DnsSdBrowser::openBrowser()
{
    browser_ = avahi_service_browser_new(client_.client(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
        type_.constData(), domain_.constData(), AvahiLookupFlags(0), &DnsSdBrowser::browseCallback,
        this);
    if (!browser_)
        emit failed(QString::fromUtf8(avahi_strerror(avahi_client_errno(client_.client()))));
}

void DnsSdBrowser::closeBrowser()
{
    for (auto& entry : instances_)
        if (entry.second.resolver) avahi_service_resolver_free(entry.second.resolver);
    instances_.clear();
    instanceCounts_.clear();
    resolveQueue_.clear();
    for (AvahiServiceResolver* resolver : retired_)
        avahi_service_resolver_free(resolver);
    retired_.clear();
    resolveTimer_.stop();
    if (browser_) avahi_service_browser_free(browser_);
    browser_ = nullptr;
}

void DnsSdBrowser::browseCallback(AvahiServiceBrowser*, AvahiIfIndex interface,
    AvahiProtocol protocol, AvahiBrowserEvent event, const char* name, const char*, const char*,
    AvahiLookupResultFlags, void* userdata)
{
    auto* self = static_cast<DnsSdBrowser*>(userdata);
    switch (event) {
    case AVAHI_BROWSER_NEW:
        self->added(interface, protocol, name);
        break;
    case AVAHI_BROWSER_REMOVE:
        self->removed(interface, protocol, name);
        break;
    case AVAHI_BROWSER_FAILURE: {
        const QString error
            = QString::fromUtf8(avahi_strerror(avahi_client_errno(self->client_.client())));
        self->closeBrowser();
        emit self->failed(error);
        break;
    }
    case AVAHI_BROWSER_ALL_FOR_NOW:
    case AVAHI_BROWSER_CACHE_EXHAUSTED:
        break;
    }
}

void DnsSdBrowser::added(AvahiIfIndex interface, AvahiProtocol protocol, const char* name)
{
    const QString serviceName = QString::fromUtf8(name);
    const QString key = instanceKey(interface, protocol, name);
    auto [instance, isNew]
        = instances_.try_emplace(key, Instance {serviceName, interface, protocol});
    if (isNew && ++instanceCounts_[serviceName] == 1) emit serviceAdded(serviceName);
    // A look-up that failed is tried again at the next announcement.
    if (instance->second.resolver || instance->second.isQueued) return;
    instance->second.isQueued = true;
    resolveQueue_.push_back(key);
    resolveTimer_.start();
}

void DnsSdBrowser::resolveQueued()
{
    for (int freed = 0; freed < resolversPerTurn && !retired_.empty(); ++freed) {
        avahi_service_resolver_free(retired_.front());
        retired_.pop_front();
    }
    for (int made = 0; made < resolversPerTurn && !resolveQueue_.empty();) {
        const auto found = instances_.find(resolveQueue_.front());
        resolveQueue_.pop_front();
        // Gone before its turn came.
        if (found == instances_.end() || !found->second.isQueued) continue;
        found->second.isQueued = false;
        resolve(found->second);
        ++made;
    }
    if (resolveQueue_.empty() && retired_.empty()) resolveTimer_.stop();
}

void DnsSdBrowser::retire(AvahiServiceResolver* resolver)
{
    retired_.push_back(resolver);
    resolveTimer_.start();
}

void DnsSdBrowser::removed(AvahiIfIndex interface, AvahiProtocol protocol, const char* name)
{
    const auto found = instances_.find(instanceKey(interface, protocol, name));
    if (found == instances_.end()) return;
    // A look-up still under way ends with the service.
    if (found->second.resolver) retire(found->second.resolver);
    const QString serviceName = found->second.name;
    instances_.erase(found);
    auto count = instanceCounts_.find(serviceName);
    if (count != instanceCounts_.end() && --count->second == 0) {
        instanceCounts_.erase(count);
        emit serviceRemoved(serviceName);
    }
}

void DnsSdBrowser::resolve(Instance& instance)
{
    instance.hasResolved = false;
    instance.resolver
        = avahi_service_resolver_new(client_.client(), instance.interface, instance.protocol,
            instance.name.toUtf8().constData(), type_.constData(), domain_.constData(),
            AVAHI_PROTO_UNSPEC, AvahiLookupFlags(0), &DnsSdBrowser::resolveCallback, this);
    if (!instance.resolver) {
        emit resolveFailed(
            instance.name, QString::fromUtf8(avahi_strerror(avahi_client_errno(client_.client()))));
    }
}

void DnsSdBrowser::resolveCallback(AvahiServiceResolver* resolver, AvahiIfIndex interface,
    AvahiProtocol protocol, AvahiResolverEvent event, const char* name, const char* type,
    const char* domain, const char* hostName, const AvahiAddress* address, uint16_t port,
    AvahiStringList* txt, AvahiLookupResultFlags, void* userdata)
{
    auto* self = static_cast<DnsSdBrowser*>(userdata);
    const auto found = self->instances_.find(instanceKey(interface, protocol, name));
    // The answer of a resolver whose service was withdrawn meanwhile is stale.
    if (found == self->instances_.end() || found->second.resolver != resolver) return;
    if (event == AVAHI_RESOLVER_FAILURE) {
        const QString error = QString::fromUtf8(
            avahi_strerror(avahi_client_errno(avahi_service_resolver_get_client(resolver))));
        found->second.resolver = nullptr;
        // Freeing a resolver inside its own callback is allowed.
        avahi_service_resolver_free(resolver);
        emit self->resolveFailed(QString::fromUtf8(name), error);
        return;
    }
    found->second.hasResolved = true;
    DnsSdService service;
    service.name = QString::fromUtf8(name);
    service.type = QString::fromUtf8(type);
    service.domain = QString::fromUtf8(domain);
    service.hostName = QString::fromUtf8(hostName);
    service.address = addressText(address, interface);
    service.port = port;
    service.txt = txtStrings(txt);
    emit self->serviceResolved(service);
}

} // namespace ostrel
