#include "app/UnixSignals.h"

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace ostrel {

namespace {

int pipeEnds[2] = {-1, -1};

void onSignal(int number)
{
    const auto byte = static_cast<unsigned char>(number);
    // Nothing else is safe in a handler; a full pipe only loses a repeated signal.
    [[maybe_unused]] const auto written = ::write(pipeEnds[0], &byte, 1);
}

} // namespace

UnixSignals::UnixSignals(QObject* parent) : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, pipeEnds) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[1], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
        unsigned char byte = 0;
        if (::read(pipeEnds[1], &byte, 1) == 1) emit received(byte);
    });

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(number, &action, nullptr);
}

UnixSignals::~UnixSignals()
{
    if (!notifier_) return;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        std::signal(number, SIG_DFL);
    notifier_.reset();
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds[0] = pipeEnds[1] = -1;
}

} // namespace ostrel
