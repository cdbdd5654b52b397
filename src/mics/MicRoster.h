#pragma once

// Turns what the receivers report into the list of problems the crew sees. Nothing is shown
// while mics are fine, and a pack switched off in a drawer is no dropout: a channel only counts
// once it has had signal. No timers: every operation takes the date.
#include <map>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "common/Date.h"
#include "mics/MicChannelReport.h"
#include "mics/MicIssue.h"

namespace ostrel {

class MicRoster {
public:
    static constexpr double defaultHoldTime = 3.0;

    // How long a cleared issue stays on show, in seconds.
    double holdTime = defaultHoldTime;
    bool warnsAboutLowBattery = true;

    void update(const MicChannelReport& report, Date at);
    void receiverWentOffline(const QString& key, const QString& name, Date at);
    void receiverCameBack(const QString& key, Date at);
    // Forgets every channel and issue of the receiver at once, without holding them.
    void removeReceiver(const QString& keyPrefix, Date at);
    // Runs the raising rules again, as every change does.
    void refresh(Date at);

    // Active and held issues at that date: by kind, then by name.
    std::vector<MicIssue> issues(Date at) const;
    // Distinct non-empty channel names in natural order.
    QStringList channelNames() const;

private:
    struct Channel {
        MicChannelReport report;
        bool everHadSignal = false;
    };
    struct OfflineReceiver {
        QString name;
        Date since;
    };
    struct Entry {
        MicIssue issue;
        std::optional<Date> clearedAt;
    };

    bool isShown(const Entry& entry, Date at) const;

    std::map<QString, Channel> channels_;
    std::map<QString, OfflineReceiver> offlineReceivers_;
    std::map<QString, Entry> current_;
};

} // namespace ostrel
