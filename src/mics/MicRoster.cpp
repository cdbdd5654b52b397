#include "mics/MicRoster.h"

#include <algorithm>

#include "common/NaturalOrder.h"

namespace ostrel {

void MicRoster::update(const MicChannelReport& report, Date at)
{
    Channel& channel = channels_[report.key];
    channel.report = report;
    if (report.hasSignal) channel.everHadSignal = true;
    refresh(at);
}

void MicRoster::receiverWentOffline(const QString& key, const QString& name, Date at)
{
    // The first name and date stand for the whole spell.
    offlineReceivers_.try_emplace(key, OfflineReceiver {name, at});
    refresh(at);
}

void MicRoster::receiverCameBack(const QString& key, Date at)
{
    offlineReceivers_.erase(key);
    refresh(at);
}

void MicRoster::removeReceiver(const QString& keyPrefix, Date at)
{
    std::erase_if(channels_, [&](const auto& item) { return item.first.startsWith(keyPrefix); });
    offlineReceivers_.erase(keyPrefix);
    std::erase_if(
        current_, [&](const auto& item) { return item.second.issue.key.startsWith(keyPrefix); });
    refresh(at);
}

void MicRoster::refresh(Date at)
{
    std::map<QString, MicIssue> raised;
    const auto raise = [&](const QString& key, const QString& name, MicIssueKind kind) {
        const QString id = micIssueId(key, kind);
        const auto existing = current_.find(id);
        // Only an active issue keeps its date; one that recurs during its hold is a new spell.
        const Date since = existing != current_.end() && !existing->second.clearedAt
            ? existing->second.issue.since
            : at;
        raised.insert_or_assign(id, MicIssue {key, name, kind, since});
    };

    for (const auto& [key, channel] : channels_) {
        if (!channel.everHadSignal) continue;
        const MicChannelReport& report = channel.report;
        if (!report.hasSignal)
            raise(key, report.name, MicIssueKind::dropout);
        else if (report.lowSignal)
            raise(key, report.name, MicIssueKind::lowSignal);
        // A dropped-out channel shows no battery warning.
        if (warnsAboutLowBattery && report.lowBattery && report.hasSignal)
            raise(key, report.name, MicIssueKind::lowBattery);
    }
    for (const auto& [key, receiver] : offlineReceivers_)
        raise(key, receiver.name, MicIssueKind::receiverOffline);

    for (auto& [id, entry] : current_) {
        if (!raised.contains(id) && !entry.clearedAt) entry.clearedAt = at;
    }
    for (auto& [id, issue] : raised)
        current_.insert_or_assign(id, Entry {std::move(issue), {}});
    std::erase_if(current_, [&](const auto& item) { return !isShown(item.second, at); });
}

bool MicRoster::isShown(const Entry& entry, Date at) const
{
    return !entry.clearedAt || secondsBetween(*entry.clearedAt, at) < holdTime;
}

std::vector<MicIssue> MicRoster::issues(Date at) const
{
    std::vector<MicIssue> shown;
    for (const auto& [id, entry] : current_) {
        if (isShown(entry, at)) shown.push_back(entry.issue);
    }
    std::sort(shown.begin(), shown.end(), [](const MicIssue& a, const MicIssue& b) {
        if (a.kind != b.kind) return a.kind < b.kind;
        return a.name < b.name;
    });
    return shown;
}

QStringList MicRoster::channelNames() const
{
    QStringList names;
    for (const auto& [key, channel] : channels_) {
        const QString& name = channel.report.name;
        if (!name.isEmpty() && !names.contains(name)) names.append(name);
    }
    std::sort(names.begin(), names.end(),
        [](const QString& a, const QString& b) { return NaturalOrder::compare(a, b) < 0; });
    return names;
}

} // namespace ostrel
