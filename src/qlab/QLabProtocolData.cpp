#include "qlab/QLabProtocol.h"

#include <QJsonArray>
#include <QJsonObject>

#include "qlab/QLabValueRules.h"
#include "qlab/TimecodeText.h"

namespace ostrel::QLabProtocol {

namespace {

// The objects of a JSON list; nothing at all when `data` is not a list of objects.
std::vector<QJsonObject> objects(const std::optional<QJsonValue>& data)
{
    if (!data || !data->isArray()) return {};
    std::vector<QJsonObject> result;
    for (const QJsonValue& entry : data->toArray()) {
        if (!entry.isObject()) return {};
        result.push_back(entry.toObject());
    }
    return result;
}

} // namespace

std::vector<QLabWorkspace> parseWorkspaces(const std::optional<QJsonValue>& data)
{
    std::vector<QLabWorkspace> workspaces;
    for (const QJsonObject& object : objects(data)) {
        const QJsonValue id = object.value("uniqueID");
        if (!id.isString()) continue;
        const QJsonValue name = object.value("displayName");
        workspaces.push_back({id.toString(),
            name.isString() ? name.toString() : QStringLiteral("Untitled Workspace")});
    }
    return workspaces;
}

std::vector<QLabCue> parseCues(const std::optional<QJsonValue>& data, Date now)
{
    std::vector<QLabCue> cues;
    for (const QJsonObject& object : objects(data)) {
        const QJsonValue id = object.value("uniqueID");
        if (!id.isString()) continue;
        const QJsonValue type = object.value("type");
        QLabCue cue;
        cue.type = type.isString() ? type.toString() : QString();
        if (ignoredCueTypes.contains(cue.type)) continue;
        cue.id = id.toString();
        cue.number = QLabValueRules::text(object.value("number"));
        cue.name = QLabValueRules::text(object.value("name"));
        cue.startedAt = now;
        cues.push_back(std::move(cue));
    }
    return cues;
}

void apply(const std::optional<QJsonValue>& values, QLabCue& cue, Date at)
{
    if (!values || !values->isObject()) return;
    const QJsonObject object = values->toObject();
    using namespace QLabValueRules;

    if (object.contains("number")) cue.number = text(object.value("number"));
    if (object.contains("name")) cue.name = text(object.value("name"));
    if (const QJsonValue type = object.value("type"); type.isString()) cue.type = type.toString();
    // An empty or missing parent never clears one already known.
    if (const QJsonValue parent = object.value("parent");
        parent.isString() && !parent.toString().isEmpty())
        cue.parentID = parent.toString();
    if (object.contains("startTime")) {
        const QString start = text(object.value("startTime"));
        if (!start.isEmpty()) cue.timecodeStart = start;
    } else if (cue.isTimecodeCue()) {
        // QLab 5.4 tells an unnamed Timecode cue's start time only in the name it makes up.
        if (const QJsonValue name = object.value("displayName"); name.isString()) {
            if (auto start = timecodeText(name.toString().toStdString()))
                cue.timecodeStart = QString::fromStdString(*start);
        }
    }
    if (object.contains("framerate")) {
        if (const auto rate = number(object.value("framerate")))
            if (const auto index = truncated(*rate)) cue.timecodeRateIndex = *index;
    }
    if (object.contains("outputType")) {
        if (const auto output = number(object.value("outputType")))
            if (const auto type = truncated(*output)) cue.timecodeOutputType = *type;
    }
    if (object.contains("isPaused")) {
        if (const auto paused = boolean(object.value("isPaused"))) cue.isPaused = *paused;
    }
    if (object.contains("actionElapsed")) {
        if (const auto elapsed = number(object.value("actionElapsed"))) {
            cue.actionElapsed = *elapsed;
            cue.sampledAt = at;
        }
    }
    auto duration = number(object.value("currentDuration"));
    if (!duration) duration = number(object.value("duration"));
    if (duration) cue.duration = *duration;
}

bool apply(
    const QString& propertyAddress, const std::optional<QJsonValue>& value, QLabCue& cue, Date now)
{
    const QStringList pieces = propertyAddress.split('/', Qt::SkipEmptyParts);
    if (pieces.isEmpty() || !timecodePropertyKeys.contains(pieces.last())) return false;
    const QString& key = pieces.last();
    // The key stays present without data, so an empty answer changes nothing and does not fall
    // back to the display name.
    const QJsonValue data = value && !value->isUndefined() ? *value : QJsonValue(QJsonValue::Null);
    apply(QJsonValue(QJsonObject {{key, data}}), cue, now);
    return true;
}

} // namespace ostrel::QLabProtocol
