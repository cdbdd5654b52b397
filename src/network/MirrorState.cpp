#include "network/MirrorState.h"

#include <QJsonArray>

#include "network/CrewJson.h"

namespace ostrel {

namespace {

template <typename T> QJsonArray objects(const std::vector<T>& values)
{
    QJsonArray array;
    for (const T& value : values)
        array.append(value.toJson());
    return array;
}

// Every element must decode; one bad element spoils the list, as a bad field spoils a record.
template <typename T> std::optional<std::vector<T>> readObjects(const QJsonValue& value)
{
    if (!value.isArray()) return std::nullopt;
    std::vector<T> values;
    for (const QJsonValue& element : value.toArray()) {
        if (!element.isObject()) return std::nullopt;
        auto decoded = T::fromJson(element.toObject());
        if (!decoded) return std::nullopt;
        values.push_back(std::move(*decoded));
    }
    return values;
}

std::optional<QStringList> readTexts(const QJsonValue& value)
{
    if (!value.isArray()) return std::nullopt;
    QStringList texts;
    for (const QJsonValue& element : value.toArray()) {
        if (!element.isString()) return std::nullopt;
        texts.append(element.toString());
    }
    return texts;
}

std::optional<QLabClientState> readQLabState(const QJsonValue& value)
{
    if (!value.isString()) return std::nullopt;
    const QByteArray raw = value.toString().toUtf8();
    return QLabClientStates::fromRawValue(
        std::string_view(raw.constData(), static_cast<std::size_t>(raw.size())));
}

} // namespace

QJsonObject MirrorState::toJson() const
{
    QJsonObject object {{"station", station}, {"meterSetting", meterSetting},
        {"isCalibrated", isCalibrated}, {"statistics", statistics.toJson()},
        {"qlabState", CrewJson::rawText(QLabClientStates::rawValue(qlabState))},
        {"cues", objects(cues)},
        {"timecodeFallbackRate", static_cast<qint64>(timecodeFallbackRate)},
        {"showsDante", showsDante}, {"danteDevices", objects(danteDevices)},
        {"danteEvents", objects(danteEvents)}, {"showsMics", showsMics},
        {"micIssues", objects(micIssues)}, {"micNames", QJsonArray::fromStringList(micNames)}};
    if (workspace) object.insert("workspace", *workspace);
    return object;
}

std::optional<MirrorState> MirrorState::fromJson(const QJsonObject& object)
{
    const auto station = CrewJson::text(object.value("station"));
    const auto meterSetting = CrewJson::text(object.value("meterSetting"));
    const auto isCalibrated = CrewJson::boolean(object.value("isCalibrated"));
    const QJsonValue statisticsValue = object.value("statistics");
    const auto statistics = statisticsValue.isObject()
        ? LevelStatistics::fromJson(statisticsValue.toObject())
        : std::nullopt;
    const auto qlabState = readQLabState(object.value("qlabState"));
    auto cues = readObjects<QLabCue>(object.value("cues"));
    const auto rate = CrewJson::integer(object.value("timecodeFallbackRate"));
    const auto showsDante = CrewJson::boolean(object.value("showsDante"));
    auto devices = readObjects<DanteDevice>(object.value("danteDevices"));
    auto events = readObjects<DanteEvent>(object.value("danteEvents"));
    const auto showsMics = CrewJson::boolean(object.value("showsMics"));
    auto issues = readObjects<MicIssue>(object.value("micIssues"));
    auto micNames = readTexts(object.value("micNames"));
    if (!station || !meterSetting || !isCalibrated || !statistics || !qlabState || !cues || !rate
        || !showsDante || !devices || !events || !showsMics || !issues || !micNames)
        return std::nullopt;

    MirrorState state;
    state.station = *station;
    state.meterSetting = *meterSetting;
    state.isCalibrated = *isCalibrated;
    state.statistics = *statistics;
    state.qlabState = *qlabState;
    state.cues = std::move(*cues);
    state.timecodeFallbackRate = *rate;
    state.showsDante = *showsDante;
    state.danteDevices = std::move(*devices);
    state.danteEvents = std::move(*events);
    state.showsMics = *showsMics;
    state.micIssues = std::move(*issues);
    state.micNames = std::move(*micNames);
    const QJsonValue workspace = object.value("workspace");
    if (!workspace.isUndefined() && !workspace.isNull()) {
        state.workspace = CrewJson::text(workspace);
        if (!state.workspace) return std::nullopt;
    }
    return state;
}

} // namespace ostrel
