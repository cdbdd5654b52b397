#pragma once

// Avahi's event loop interface over Qt's: watches are socket notifiers and timeouts are timers of
// the calling thread, so every Avahi callback runs on the main thread between other events, and
// Avahi functions can be called from any slot without locking.
#include <avahi-common/watch.h>

namespace ostrel::AvahiPoll {

// The one poll for clients made on the main thread.
const ::AvahiPoll* eventLoop();

} // namespace ostrel::AvahiPoll
