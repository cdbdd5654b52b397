#include "sessions/CueTracker.h"

#include <algorithm>

#include <QSet>

namespace ostrel {

namespace {

void sortByStart(std::vector<CueRecord>& records)
{
    std::stable_sort(records.begin(), records.end(),
        [](const CueRecord& a, const CueRecord& b) { return a.start < b.start; });
}

} // namespace

CueTracker::Changes CueTracker::update(const std::vector<QLabCue>& running, Date at)
{
    Changes changes;
    QSet<QString> runningIDs;
    for (const QLabCue& cue : running)
        runningIDs.insert(cue.id);

    // The clock may have been set back since a record opened.
    sortByStart(active);
    std::vector<CueRecord> stillOpen;
    stillOpen.reserve(active.size());
    for (CueRecord& record : active) {
        if (runningIDs.contains(record.cueID)) {
            stillOpen.push_back(std::move(record));
            continue;
        }
        record.end = at;
        changes.stopped.push_back(record);
        history.push_back(std::move(record));
    }
    active = std::move(stillOpen);

    for (const QLabCue& cue : running) {
        auto open = std::find_if(active.begin(), active.end(),
            [&](const CueRecord& record) { return record.cueID == cue.id; });
        if (open != active.end()) {
            open->number = cue.number;
            open->name = cue.displayName();
            continue;
        }
        CueRecord record;
        record.id = QUuid::createUuid();
        record.cueID = cue.id;
        record.number = cue.number;
        record.name = cue.displayName();
        record.type = cue.type;
        // The tracker's own date, not the client's `startedAt`: records and intervals then
        // share one clock.
        record.start = at;
        record.meterSetting = meterSetting;
        changes.started.push_back(record);
        active.push_back(std::move(record));
    }
    sortByStart(active);

    const auto limit = static_cast<std::size_t>(std::max(historyLimit, 0));
    if (history.size() > limit)
        history.erase(
            history.begin(), history.begin() + static_cast<std::ptrdiff_t>(history.size() - limit));
    return changes;
}

void CueTracker::record(const MeasurementInterval& interval)
{
    for (CueRecord& record : active)
        record.statistics.add(interval);
}

std::vector<CueRecord> CueTracker::activeSnapshot(Date endingAt) const
{
    std::vector<CueRecord> snapshot = active;
    sortByStart(snapshot);
    for (CueRecord& record : snapshot)
        record.end = endingAt;
    return snapshot;
}

const CueRecord* CueTracker::activeRecord(const QString& cueID) const
{
    const auto found = std::find_if(active.begin(), active.end(),
        [&](const CueRecord& record) { return record.cueID == cueID; });
    return found == active.end() ? nullptr : &*found;
}

} // namespace ostrel
