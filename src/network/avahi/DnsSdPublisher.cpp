#include "network/avahi/DnsSdPublisher.h"

#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>

namespace ostrel {

DnsSdPublisher::DnsSdPublisher(DnsSdClient& client, QObject* parent)
    : QObject(parent), client_(client)
{
    connect(&client_, &DnsSdClient::stateChanged, this, &DnsSdPublisher::followClient);
    connect(&client_, &DnsSdClient::aboutToReset, this, [this] {
        group_ = nullptr;
        isPublished_ = false;
    });
}

DnsSdPublisher::~DnsSdPublisher()
{
    freeGroup();
}

void DnsSdPublisher::publish(
    const QString& name, const QString& type, quint16 port, const QStringList& txt)
{
    freeGroup();
    name_ = name.toUtf8();
    type_ = type.toUtf8();
    port_ = port;
    txt_ = txt;
    wantsPublished_ = true;
    followClient();
}

void DnsSdPublisher::withdraw()
{
    wantsPublished_ = false;
    freeGroup();
}

void DnsSdPublisher::followClient()
{
    if (!wantsPublished_) return;
    if (client_.isRunning() && !client_.canPublish()) {
        // The daemon is (re)registering its host name: announce again once it has settled.
        if (group_) avahi_entry_group_reset(group_);
        isPublished_ = false;
        return;
    }
    if (!client_.canPublish()) return;
    if (!group_) {
        group_ = avahi_entry_group_new(client_.client(), &DnsSdPublisher::groupCallback, this);
        if (!group_) {
            emit failed(QString::fromUtf8(avahi_strerror(avahi_client_errno(client_.client()))));
            return;
        }
    }
    if (avahi_entry_group_is_empty(group_)) addService();
}

void DnsSdPublisher::addService()
{
    AvahiStringList* txt = nullptr;
    for (const QString& entry : txt_)
        txt = avahi_string_list_add(txt, entry.toUtf8().constData());
    int result = avahi_entry_group_add_service_strlst(group_, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
        AvahiPublishFlags(0), name_.constData(), type_.constData(), nullptr, nullptr, port_, txt);
    avahi_string_list_free(txt);
    if (result == AVAHI_ERR_COLLISION) {
        rename();
        return;
    }
    if (result >= 0) result = avahi_entry_group_commit(group_);
    if (result < 0) emit failed(QString::fromUtf8(avahi_strerror(result)));
}

void DnsSdPublisher::rename()
{
    char* alternative = avahi_alternative_service_name(name_.constData());
    name_ = alternative;
    avahi_free(alternative);
    avahi_entry_group_reset(group_);
    addService();
}

void DnsSdPublisher::groupCallback(AvahiEntryGroup*, AvahiEntryGroupState state, void* userdata)
{
    auto* self = static_cast<DnsSdPublisher*>(userdata);
    switch (state) {
    case AVAHI_ENTRY_GROUP_ESTABLISHED:
        self->isPublished_ = true;
        emit self->published(self->name());
        break;
    case AVAHI_ENTRY_GROUP_COLLISION:
        self->isPublished_ = false;
        self->rename();
        break;
    case AVAHI_ENTRY_GROUP_FAILURE:
        self->isPublished_ = false;
        emit self->failed(
            QString::fromUtf8(avahi_strerror(avahi_client_errno(self->client_.client()))));
        break;
    case AVAHI_ENTRY_GROUP_UNCOMMITED:
    case AVAHI_ENTRY_GROUP_REGISTERING:
        break;
    }
}

void DnsSdPublisher::freeGroup()
{
    isPublished_ = false;
    if (group_) avahi_entry_group_free(group_);
    group_ = nullptr;
}

} // namespace ostrel
