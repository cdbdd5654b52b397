#pragma once

// Crew links for the tests: short waits, a clock the test can move, and a wait until no crew
// service of an earlier test is announced any more.
#include <memory>
#include <optional>

#include <QProcess>
#include <QSysInfo>
#include <QTest>

#include "crew/CrewLink.h"

namespace ostrel::testsupport {

// Real time moved on by hand, or a time held still.
struct MovableClock {
    double offsetSeconds = 0.0;
    std::optional<Date> fixed;
    Date now() const
    {
        return fixed.value_or(addingSeconds(std::chrono::system_clock::now(), offsetSeconds));
    }
};

inline CrewLink::Timings shortCrewTimings()
{
    CrewLink::Timings timings;
    timings.retryAfterFailure = std::chrono::milliseconds(300);
    timings.retryAfterLoss = std::chrono::milliseconds(200);
    timings.watchdogTick = std::chrono::milliseconds(50);
    timings.dnsSdRetry = std::chrono::milliseconds(500);
    return timings;
}

inline std::unique_ptr<CrewLink> makeLink(std::shared_ptr<MovableClock> clock = nullptr)
{
    if (!clock) clock = std::make_shared<MovableClock>();
    return std::make_unique<CrewLink>(shortCrewTimings(), [clock] { return clock->now(); });
}

// A withdrawn service lingers a moment in the daemon's cache.
inline bool noCrewAnnounced()
{
    return QTest::qWaitFor(
        [] {
            QProcess browse;
            browse.start(QStringLiteral("avahi-browse"),
                {QStringLiteral("-pt"), QStringLiteral("_ostrel._tcp")});
            return browse.waitForFinished(10000) && browse.readAll().trimmed().isEmpty();
        },
        15000);
}

inline bool isConnectedTo(const CrewLink& link, const QString& primary)
{
    return link.status() == CrewLink::Status {CrewLink::StatusKind::connected, 0, primary};
}

} // namespace ostrel::testsupport
