#include "network/avahi/AvahiPoll.h"

#include <avahi-common/timeval.h>

#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <climits>

// Avahi declares these two structures and leaves them to the poll implementation.
struct AvahiWatch {
    int fd;
    AvahiWatchEvent happened;
    AvahiWatchCallback callback;
    void* userdata;
    QSocketNotifier* read;
    QSocketNotifier* write;
};

struct AvahiTimeout {
    QTimer* timer;
    AvahiTimeoutCallback callback;
    void* userdata;
};

namespace ostrel::AvahiPoll {

namespace {

void dispatch(AvahiWatch* watch, AvahiWatchEvent event)
{
    watch->happened = event;
    // The callback may free the watch: nothing may touch it afterwards.
    watch->callback(watch, watch->fd, event, watch->userdata);
}

void watchUpdate(AvahiWatch* watch, AvahiWatchEvent events)
{
    watch->read->setEnabled(events & AVAHI_WATCH_IN);
    watch->write->setEnabled(events & AVAHI_WATCH_OUT);
}

AvahiWatch* watchNew(
    const ::AvahiPoll*, int fd, AvahiWatchEvent events, AvahiWatchCallback callback, void* userdata)
{
    auto* watch = new AvahiWatch {fd, AvahiWatchEvent(0), callback, userdata,
        new QSocketNotifier(fd, QSocketNotifier::Read),
        new QSocketNotifier(fd, QSocketNotifier::Write)};
    QObject::connect(
        watch->read, &QSocketNotifier::activated, [watch] { dispatch(watch, AVAHI_WATCH_IN); });
    QObject::connect(
        watch->write, &QSocketNotifier::activated, [watch] { dispatch(watch, AVAHI_WATCH_OUT); });
    watchUpdate(watch, events);
    return watch;
}

AvahiWatchEvent watchGetEvents(AvahiWatch* watch)
{
    return watch->happened;
}

void watchFree(AvahiWatch* watch)
{
    watch->read->setEnabled(false);
    watch->write->setEnabled(false);
    // Possibly inside their own signal: deleted once it has returned.
    watch->read->deleteLater();
    watch->write->deleteLater();
    delete watch;
}

void timeoutUpdate(AvahiTimeout* timeout, const struct timeval* when)
{
    if (!when) {
        timeout->timer->stop();
        return;
    }
    // `when` is an absolute time of day; a negative age lies in the future.
    const long long milliseconds = std::max<long long>(0, -avahi_age(when) / 1000);
    timeout->timer->start(static_cast<int>(std::min<long long>(milliseconds, INT_MAX)));
}

AvahiTimeout* timeoutNew(
    const ::AvahiPoll*, const struct timeval* when, AvahiTimeoutCallback callback, void* userdata)
{
    auto* timeout = new AvahiTimeout {new QTimer, callback, userdata};
    timeout->timer->setSingleShot(true);
    timeout->timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timeout->timer, &QTimer::timeout,
        [timeout] { timeout->callback(timeout, timeout->userdata); });
    timeoutUpdate(timeout, when);
    return timeout;
}

void timeoutFree(AvahiTimeout* timeout)
{
    timeout->timer->stop();
    timeout->timer->deleteLater();
    delete timeout;
}

} // namespace

const ::AvahiPoll* eventLoop()
{
    static const ::AvahiPoll api {nullptr, watchNew, watchUpdate, watchGetEvents, watchFree,
        timeoutNew, timeoutUpdate, timeoutFree};
    return &api;
}

} // namespace ostrel::AvahiPoll
