#include "network/avahi/DnsSdClient.h"

#include <avahi-common/error.h>

#include <QPointer>

#include "network/avahi/AvahiPoll.h"

namespace ostrel {

DnsSdClient::DnsSdClient(std::chrono::milliseconds retryDelay, QObject* parent)
    : QObject(parent), retryDelay_(retryDelay)
{
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, &DnsSdClient::connectToDaemon);
}

DnsSdClient::~DnsSdClient()
{
    freeClient();
}

void DnsSdClient::start()
{
    if (state_ != State::stopped) return;
    connectToDaemon();
}

void DnsSdClient::stop()
{
    retry_.stop();
    freeClient();
    setState(State::stopped, {});
}

void DnsSdClient::connectToDaemon()
{
    freeClient();
    int error = 0;
    // The callback may run before this returns, with the new client as its argument.
    AvahiClient* client = avahi_client_new(
        AvahiPoll::eventLoop(), AVAHI_CLIENT_NO_FAIL, &DnsSdClient::clientCallback, this, &error);
    if (!client) {
        // Without a system bus even a client that waits for its daemon can't be made.
        setState(State::unavailable, QString::fromUtf8(avahi_strerror(error)));
        retry_.start(retryDelay_);
        return;
    }
    client_ = client;
    if (avahi_client_get_state(client) == AVAHI_CLIENT_CONNECTING)
        setState(State::unavailable, QString::fromUtf8(avahi_strerror(AVAHI_ERR_NO_DAEMON)));
}

void DnsSdClient::clientCallback(AvahiClient* client, AvahiClientState state, void* userdata)
{
    auto* self = static_cast<DnsSdClient*>(userdata);
    switch (state) {
    case AVAHI_CLIENT_S_RUNNING:
    case AVAHI_CLIENT_S_REGISTERING:
    case AVAHI_CLIENT_S_COLLISION:
        if (!self->client_) self->client_ = client;
        self->setState(State::running, {}, state == AVAHI_CLIENT_S_RUNNING);
        break;
    case AVAHI_CLIENT_CONNECTING:
        self->setState(State::unavailable, QString::fromUtf8(avahi_strerror(AVAHI_ERR_NO_DAEMON)));
        break;
    case AVAHI_CLIENT_FAILURE:
        // The daemon went away: a new client waits for it to come back. Not from inside the
        // client's own callback.
        self->setState(
            State::unavailable, QString::fromUtf8(avahi_strerror(avahi_client_errno(client))));
        self->reconnectLater();
        break;
    }
}

void DnsSdClient::reconnectLater()
{
    QPointer<DnsSdClient> self(this);
    QMetaObject::invokeMethod(
        this,
        [self] {
            if (self && self->state_ != State::stopped) self->connectToDaemon();
        },
        Qt::QueuedConnection);
}

void DnsSdClient::freeClient()
{
    if (!client_) return;
    emit aboutToReset();
    AvahiClient* client = client_;
    client_ = nullptr;
    avahi_client_free(client);
}

void DnsSdClient::setState(State state, const QString& errorText, bool serverSettled)
{
    if (state == state_ && errorText == errorText_ && serverSettled == serverSettled_) return;
    state_ = state;
    errorText_ = errorText;
    serverSettled_ = serverSettled;
    emit stateChanged();
}

} // namespace ostrel
