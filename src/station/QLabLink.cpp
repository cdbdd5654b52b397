#include "station/QLabLink.h"

#include <algorithm>

namespace ostrel {

QLabLink::QLabLink(
    QLabSettings& settings, QLabClient::Timings timings, Clock clock, QObject* parent)
    : QObject(parent), settings_(settings), clock_(clock), client_(timings, std::move(clock))
{
    client_.onRunningCuesChanged = [this](const std::vector<QLabCue>& cues) {
        if (onRunningCuesChanged) onRunningCuesChanged(cues, clock_());
    };
}

void QLabLink::start()
{
    applySettings();
    if (isFollowing_) return;
    isFollowing_ = true;
    connect(&settings_, &SettingsGroup::changed, this, &QLabLink::applySettings);
}

void QLabLink::applySettings()
{
    if (isSuspended_) return;
    ++applies_;
    client_.configure(settings_.enabled(), trimmedHost(settings_.host()),
        clampedPort(settings_.port()), settings_.passcode(), settings_.workspace());
}

QString QLabLink::trimmedHost(const QString& host)
{
    // Spaces and tabs only: a line end in the field is the user's to see, not ours to hide.
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype first = 0;
    qsizetype end = host.size();
    while (first < end && isBlank(host[first]))
        ++first;
    while (end > first && isBlank(host[end - 1]))
        --end;
    return host.mid(first, end - first);
}

quint16 QLabLink::clampedPort(qint64 port)
{
    return static_cast<quint16>(std::clamp<qint64>(port, 0, 65535));
}

} // namespace ostrel
