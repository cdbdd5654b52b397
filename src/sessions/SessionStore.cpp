#include "sessions/SessionStore.h"

#include <algorithm>

#include "sessions/SessionArchive.h"

namespace ostrel {

SessionStore::SessionStore(
    std::shared_ptr<SessionFiles> files, QString archiveFolder, QObject* parent)
    : QObject(parent),
      files_(std::move(files)),
      archiveFolder_(archiveFolder.isEmpty() ? SessionArchive::folder() : std::move(archiveFolder))
{
}

void SessionStore::updateRunningCues(const std::vector<QLabCue>& cues, Date at)
{
    const auto changes = tracker_.update(cues, at);
    if (changes.isEmpty()) return;

    if (!changes.stopped.empty()) {
        history_.insert(history_.begin(), changes.stopped.rbegin(), changes.stopped.rend());
        const auto limit = static_cast<std::size_t>(std::max(tracker_.historyLimit, 0));
        if (history_.size() > limit) history_.resize(limit);
        emit historyChanged();
    }
    if (liveSession_) {
        // A cue that began before the show began belongs to no session.
        for (const CueRecord& record : changes.stopped) {
            if (record.start >= liveSession_->start) liveSession_->cues.push_back(record);
        }
    }
    for (const CueRecord& record : changes.started) {
        if (onCueStarted) onCueStarted(record);
    }
}

void SessionStore::ingest(const MeasurementInterval& interval, Date at)
{
    // The cue history works without a session.
    tracker_.record(interval);
    if (!liveSession_) return;
    liveSession_->statistics.add(interval);
    if (!recordsLevelHistory_) return;

    secondStatistics_.add(interval);
    if (!secondStart_) secondStart_ = at;
    if (secondsBetween(*secondStart_, at) < 1.0) return;
    const auto leq = secondStatistics_.leq();
    // Without signal the second goes on gathering, from the same start.
    if (!leq || !secondStatistics_.maxLevel) return;
    liveSession_->levels.push_back({*secondStart_, *leq, *secondStatistics_.maxLevel});
    secondStatistics_ = {};
    secondStart_ = at;
}

void SessionStore::start(
    const QString& name, Date at, const std::optional<QString>& recordingFolderName)
{
    ShowSession session(name, at, tracker_.meterSetting, recordingFolderName);
    session.microphoneCorrection = correctionName_;
    liveSession_ = session;
    activeSession_ = std::move(session);
    secondStatistics_ = {};
    secondStart_.reset();
    emit activeSessionChanged();
}

std::optional<ShowSession> SessionStore::currentSnapshot(Date at) const
{
    if (!liveSession_) return std::nullopt;
    ShowSession snapshot = *liveSession_;
    for (CueRecord& record : tracker_.activeSnapshot(at)) {
        if (record.start >= snapshot.start) snapshot.cues.push_back(std::move(record));
    }
    std::stable_sort(snapshot.cues.begin(), snapshot.cues.end(),
        [](const CueRecord& a, const CueRecord& b) { return a.start < b.start; });
    return snapshot;
}

std::optional<ShowSession> SessionStore::end(Date at)
{
    auto snapshot = currentSnapshot(at);
    if (!snapshot) return std::nullopt;
    snapshot->end = at;
    liveSession_.reset();
    activeSession_.reset();
    lastSession_ = snapshot;
    emit activeSessionChanged();
    emit lastSessionChanged();
    // A failed write loses nothing here: the show stays available as the last session.
    if (archivesSessions_) SessionArchive::save(*snapshot, *files_, archiveFolder_);
    return snapshot;
}

std::optional<ShowSession> SessionStore::sessionForExport(Date at) const
{
    if (auto snapshot = currentSnapshot(at)) return snapshot;
    return lastSession_;
}

void SessionStore::setRecordsLevelHistory(bool value)
{
    if (value == recordsLevelHistory_) return;
    recordsLevelHistory_ = value;
    emit recordsLevelHistoryChanged();
}

void SessionStore::setArchivesSessions(bool value)
{
    if (value == archivesSessions_) return;
    archivesSessions_ = value;
    emit archivesSessionsChanged();
}

void SessionStore::setMeterSetting(const QString& value)
{
    if (value == tracker_.meterSetting) return;
    tracker_.meterSetting = value;
    emit meterSettingChanged();
}

void SessionStore::setMicrophoneCorrectionName(const std::optional<QString>& value)
{
    if (value == correctionName_) return;
    correctionName_ = value;
    emit microphoneCorrectionNameChanged();
}

} // namespace ostrel
