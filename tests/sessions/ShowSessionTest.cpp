#include <gtest/gtest.h>

#include <QJsonArray>

#include "sessions/SessionSamples.h"
#include "sessions/ShowSession.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

CueRecord cueRecord(const QString& cueID, double start, double end)
{
    CueRecord record;
    record.id = QUuid::createUuid();
    record.cueID = cueID;
    record.number = cueID;
    record.name = "Cue " + cueID;
    record.type = "Audio";
    record.start = at(start);
    record.end = at(end);
    record.meterSetting = "A Fast";
    record.statistics.add(interval(80.0));
    return record;
}

ShowSession finishedSession()
{
    ShowSession session("Friday evening", at(0.0), "LAeq Fast +94.0 dB", "2026-03-14T19-30-05");
    session.end = at(7200.0);
    session.microphoneCorrection = "ECM8000 #2";
    session.statistics.add(interval(82.0));
    session.statistics.add(interval(91.0));
    session.cues = {cueRecord("1", 10.0, 20.0), cueRecord("2", 15.0, 300.0)};
    session.levels = {{at(0.0), 81.25, 84.5}, {at(1.0), 79.0, 83.0}};
    return session;
}

} // namespace

TEST(ShowSession, NewSessionHasANewIdAndNothingInIt)
{
    const ShowSession first("Matinee", at(0.0), "C Slow");
    const ShowSession second("Matinee", at(0.0), "C Slow");

    EXPECT_FALSE(first.id.isNull());
    EXPECT_NE(first.id, second.id);
    EXPECT_EQ(first.name, "Matinee");
    EXPECT_EQ(first.start, at(0.0));
    EXPECT_EQ(first.meterSetting, "C Slow");
    EXPECT_FALSE(first.end.has_value());
    EXPECT_TRUE(first.statistics.isEmpty());
    EXPECT_TRUE(first.cues.empty());
    EXPECT_TRUE(first.levels.empty());
    EXPECT_FALSE(first.recordingFolderName.has_value());
    EXPECT_FALSE(first.microphoneCorrection.has_value());

    const ShowSession recorded("Evening", at(0.0), "A Fast", QStringLiteral("folder"));
    EXPECT_EQ(recorded.recordingFolderName, "folder");
}

TEST(ShowSession, DurationRunsToTheDateGivenUntilTheSessionEnds)
{
    ShowSession session("Evening", at(0.0), "A Fast");
    EXPECT_DOUBLE_EQ(session.duration(at(90.0)), 90.0);
    session.end = at(60.0);
    EXPECT_DOUBLE_EQ(session.duration(at(90.0)), 60.0);
}

TEST(ShowSession, MaximumAndAverageComeFromTheStatisticsAndAreAbsentWithoutSound)
{
    ShowSession session("Evening", at(0.0), "A Fast");
    EXPECT_FALSE(session.maximumLevel().has_value());
    EXPECT_FALSE(session.averageLeq().has_value());

    session.statistics.add(interval(80.0));
    session.statistics.add(interval(90.0));
    EXPECT_EQ(session.maximumLevel(), 91.0);
    EXPECT_EQ(session.averageLeq(), session.statistics.leq());
    EXPECT_NEAR(*session.averageLeq(), 87.40, 0.01);
}

TEST(ShowSession, JsonUsesTheFieldNames)
{
    const ShowSession session = finishedSession();
    const QJsonObject json = session.toJson();

    EXPECT_EQ(json.value("id").toString(), session.id.toString(QUuid::WithoutBraces).toUpper());
    EXPECT_EQ(json.value("name").toString(), "Friday evening");
    EXPECT_EQ(json.value("start").toString(), "2026-03-14T19:30:05.250Z");
    EXPECT_EQ(json.value("end").toString(), "2026-03-14T21:30:05.250Z");
    EXPECT_EQ(json.value("meterSetting").toString(), "LAeq Fast +94.0 dB");
    EXPECT_EQ(json.value("statistics").toObject(), session.statistics.toJson());
    EXPECT_EQ(json.value("cues").toArray().size(), 2);
    EXPECT_EQ(json.value("cues").toArray().at(0).toObject(), session.cues[0].toJson());
    EXPECT_EQ(json.value("recordingFolderName").toString(), "2026-03-14T19-30-05");
    EXPECT_EQ(json.value("microphoneCorrection").toString(), "ECM8000 #2");
    EXPECT_EQ(json.size(), 10);

    const QJsonObject entry = json.value("levels").toArray().at(0).toObject();
    EXPECT_EQ(entry.value("time").toString(), "2026-03-14T19:30:05.250Z");
    EXPECT_EQ(entry.value("leq").toDouble(), 81.25);
    EXPECT_EQ(entry.value("maxLevel").toDouble(), 84.5);
    EXPECT_EQ(entry.size(), 3);
}

TEST(ShowSession, RunningSessionLeavesAbsentOptionalsOutOfItsJson)
{
    const QJsonObject json = ShowSession("Evening", at(0.0), "A Fast").toJson();
    EXPECT_FALSE(json.contains("end"));
    EXPECT_FALSE(json.contains("recordingFolderName"));
    EXPECT_FALSE(json.contains("microphoneCorrection"));
    EXPECT_TRUE(json.value("cues").isArray());
    EXPECT_TRUE(json.value("levels").isArray());
}

TEST(ShowSession, JsonRoundTrips)
{
    const ShowSession session = finishedSession();
    EXPECT_EQ(ShowSession::fromJson(session.toJson()), session);
    const ShowSession running("Evening", at(0.0), "A Fast");
    EXPECT_EQ(ShowSession::fromJson(running.toJson()), running);
}

TEST(ShowSession, OptionalKeysMayBeMissingOrNull)
{
    for (const char* key : {"end", "recordingFolderName", "microphoneCorrection"}) {
        QJsonObject json = finishedSession().toJson();
        json.remove(QLatin1String(key));
        EXPECT_TRUE(ShowSession::fromJson(json).has_value()) << key;
        json.insert(QLatin1String(key), QJsonValue::Null);
        EXPECT_TRUE(ShowSession::fromJson(json).has_value()) << key;
    }
}

TEST(ShowSession, EveryOtherKeyIsRequired)
{
    for (const char* key :
        {"id", "name", "start", "meterSetting", "statistics", "cues", "levels"}) {
        QJsonObject json = finishedSession().toJson();
        json.remove(QLatin1String(key));
        EXPECT_FALSE(ShowSession::fromJson(json).has_value()) << key;
    }
}

TEST(ShowSession, OneUnreadableCueOrLogEntrySpoilsTheWholeSession)
{
    QJsonObject json = finishedSession().toJson();
    QJsonArray cues = json.value("cues").toArray();
    QJsonObject brokenCue = cues.at(1).toObject();
    brokenCue.remove("cueID");
    cues.replace(1, brokenCue);
    json.insert("cues", cues);
    EXPECT_FALSE(ShowSession::fromJson(json).has_value());

    json = finishedSession().toJson();
    QJsonArray levels = json.value("levels").toArray();
    levels.append(QJsonObject {{"time", "2026-03-14T19:30:07Z"}, {"leq", "loud"}, {"maxLevel", 1}});
    json.insert("levels", levels);
    EXPECT_FALSE(ShowSession::fromJson(json).has_value());

    json = finishedSession().toJson();
    json.insert("levels", QJsonArray {42});
    EXPECT_FALSE(ShowSession::fromJson(json).has_value());
}

TEST(ShowSession, SessionKeepsEveryCueBeyondTheHistoryLimit)
{
    ShowSession session("Long run", at(0.0), "A Fast");
    for (int i = 0; i < 2500; ++i)
        session.cues.push_back(cueRecord(QString::number(i), i, i + 0.5));

    const auto decoded = ShowSession::fromJson(session.toJson());

    ASSERT_TRUE(decoded.has_value());
    ASSERT_EQ(decoded->cues.size(), 2500u);
    EXPECT_EQ(decoded->cues.front().cueID, "0");
    EXPECT_EQ(decoded->cues.back().cueID, "2499");
}

TEST(LevelLogEntry, JsonHasTimeLeqAndMaxLevel)
{
    const LevelLogEntry entry {at(2.0), -3.5, 101.0};
    const QJsonObject json = entry.toJson();
    EXPECT_EQ(json,
        (QJsonObject {{"time", "2026-03-14T19:30:07.250Z"}, {"leq", -3.5}, {"maxLevel", 101.0}}));
    EXPECT_EQ(LevelLogEntry::fromJson(json), entry);
}

TEST(LevelLogEntry, MissingOrMistypedKeyFailsToRead)
{
    for (const char* key : {"time", "leq", "maxLevel"}) {
        QJsonObject json = LevelLogEntry {at(2.0), 80.0, 90.0}.toJson();
        json.remove(QLatin1String(key));
        EXPECT_FALSE(LevelLogEntry::fromJson(json).has_value()) << key;
        json.insert(QLatin1String(key), QJsonValue::Null);
        EXPECT_FALSE(LevelLogEntry::fromJson(json).has_value()) << key;
    }
}
