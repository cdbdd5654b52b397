#pragma once

// The station's side of the conversation with QLab 5 over OSC: the messages it sends, and what it
// makes of what comes back. No network and no clock: the client decides when, and hands in the
// current date where a cue is first seen.
#include <optional>
#include <vector>

#include <QHash>
#include <QJsonValue>
#include <QSet>
#include <QString>
#include <QStringList>

#include "common/Date.h"
#include "qlab/OSCMessage.h"
#include "qlab/QLabCue.h"
#include "qlab/QLabMessage.h"
#include "qlab/QLabReply.h"
#include "qlab/QLabWorkspace.h"

namespace ostrel::QLabProtocol {

// Asked of every running cue.
inline const QStringList cueValueKeys {
    "number", "name", "type", "parent", "isPaused", "actionElapsed", "currentDuration", "duration"};
// Asked of Timecode cues.
inline const QStringList timecodeKeys {"displayName", "startTime", "framerate", "outputType"};
// Also read one at a time, as QLab answers some of them only that way.
inline const QStringList timecodePropertyKeys {"startTime", "framerate", "outputType"};
// Asked of cues known only as someone's parent.
inline const QStringList parentKeys {"number", "name", "type", "parent"};
// Entries of a running-cue list that are containers, not cues.
inline const QSet<QString> ignoredCueTypes {"Cue List", "Cart"};
// The events `listen` subscribes to.
inline const QStringList listenedEvents {"cue/start", "cue/stop"};

// Messages sent. Workspace and cue IDs go into the address as they stand.
OSCMessage workspaces();
// The passcode is sent only when there is one.
OSCMessage connect(const QString& workspace, const QString& passcode);
OSCMessage subscribeToUpdates();
OSCMessage listen(const QString& workspace, const QString& event);
OSCMessage runningCues(const QString& workspace);
OSCMessage cueValues(const QString& workspace, const QString& cueID, const QStringList& keys);
OSCMessage cueProperty(const QString& workspace, const QString& cueID, const QString& key);
OSCMessage thump(const QString& workspace);
OSCMessage disconnect(const QString& workspace);

// Nothing for a message the station has no use for or cannot read. A started cue is stamped
// with `now`.
std::optional<QLabMessage> parse(const OSCMessage& message, Date now);
std::optional<QLabReply> parseReply(const OSCMessage& message);
// Entries without a unique ID are skipped; anything but a list of objects gives none.
std::vector<QLabWorkspace> parseWorkspaces(const std::optional<QJsonValue>& data);
// Cue lists and carts are left out; each cue is stamped as first seen at `now`.
std::vector<QLabCue> parseCues(const std::optional<QJsonValue>& data, Date now);

// Reads a "valuesForKeys" reply into the cue. What the reply leaves out stays as it was.
void apply(const std::optional<QJsonValue>& values, QLabCue& cue, Date at);
// Reads the reply to a single Timecode property; false when the address names no such property.
bool apply(
    const QString& propertyAddress, const std::optional<QJsonValue>& value, QLabCue& cue, Date now);
// The piece behind "cue_id" in an address.
std::optional<QString> cueID(const QString& address);

// While a group runs, it is shown instead of its children.
std::vector<QLabCue> collapseGroups(
    const std::vector<QLabCue>& cues, const QHash<QString, QLabCue>& knownCues);
// The highest group above `cue` that is running or known, or `cue` itself.
QLabCue outermostGroup(const QLabCue& cue, const QHash<QString, QLabCue>& runningByID,
    const QHash<QString, QLabCue>& knownCues);

} // namespace ostrel::QLabProtocol
