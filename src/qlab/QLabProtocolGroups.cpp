#include "qlab/QLabProtocol.h"

#include <algorithm>

namespace ostrel::QLabProtocol {

QLabCue outermostGroup(const QLabCue& cue, const QHash<QString, QLabCue>& runningByID,
    const QHash<QString, QLabCue>& knownCues)
{
    QSet<QString> visited {cue.id};
    std::optional<QString> parent = cue.parentID;
    const QLabCue* outermost = nullptr;
    // A parent seen twice ends the walk, so a cycle in QLab's answers cannot hang the station.
    while (parent && !visited.contains(*parent)) {
        visited.insert(*parent);
        const QLabCue* entry = nullptr;
        if (const auto running = runningByID.constFind(*parent); running != runningByID.constEnd())
            entry = &running.value();
        else if (const auto known = knownCues.constFind(*parent); known != knownCues.constEnd())
            entry = &known.value();
        if (!entry || entry->type != QLatin1String("Group")) break;
        outermost = entry;
        parent = outermost->parentID;
    }
    if (!outermost) return cue;
    if (const auto running = runningByID.constFind(outermost->id);
        running != runningByID.constEnd())
        return running.value();

    // A group known only by its properties counts its time from its child.
    QLabCue group = *outermost;
    group.isPaused = cue.isPaused;
    group.startedAt = cue.startedAt;
    group.actionElapsed.reset();
    group.duration.reset();
    group.sampledAt.reset();
    return group;
}

std::vector<QLabCue> collapseGroups(
    const std::vector<QLabCue>& cues, const QHash<QString, QLabCue>& knownCues)
{
    QHash<QString, QLabCue> runningByID;
    for (const auto& cue : cues) {
        if (!runningByID.contains(cue.id)) runningByID.insert(cue.id, cue);
    }

    std::vector<QLabCue> result;
    QHash<QString, std::size_t> indexByID;
    for (const auto& cue : cues) {
        QLabCue outer = outermostGroup(cue, runningByID, knownCues);
        const auto known = indexByID.constFind(outer.id);
        if (known == indexByID.constEnd()) {
            indexByID.insert(outer.id, result.size());
            result.push_back(std::move(outer));
        } else if (!runningByID.contains(outer.id)) {
            QLabCue& shown = result[known.value()];
            shown.startedAt = std::min(shown.startedAt, outer.startedAt);
        }
    }
    return result;
}

} // namespace ostrel::QLabProtocol
