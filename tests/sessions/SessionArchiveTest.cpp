#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "sessions/MemorySessionFiles.h"
#include "sessions/SessionArchive.h"
#include "sessions/SessionSamples.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

ShowSession sampleSession(const QString& name, Date start)
{
    ShowSession session(name, start, "A Fast");
    session.end = addingSeconds(start, 60.0);
    CueRecord record;
    record.id = QUuid::createUuid();
    record.cueID = "Q1";
    record.number = "1";
    record.name = "Doors";
    record.type = "Audio";
    record.start = addingSeconds(start, 1.0);
    record.end = addingSeconds(start, 2.0);
    session.cues.push_back(record);
    session.levels.push_back({start, 70.0, 75.0});
    return session;
}

} // namespace

TEST(SessionArchive, FolderIsSessionsInTheApplicationDataFolder)
{
    EXPECT_TRUE(SessionArchive::folder().endsWith("/Sessions"));
    EXPECT_EQ(SessionArchive::recordingFolder("2026-03-14T19-30-05", "/data/Sessions"),
        "/data/Sessions/2026-03-14T19-30-05");
}

TEST(SessionArchive, BaseNameIsTheUtcSecondWithDashesForColons)
{
    EXPECT_EQ(SessionArchive::baseName(at(0.0)), "2026-03-14T19-30-05");
    EXPECT_EQ(SessionArchive::baseName(at(0.749)), "2026-03-14T19-30-05"); // cut, not rounded
    EXPECT_EQ(SessionArchive::baseName(at(4.75 + 3600 * 5)), "2026-03-15T00-30-10");
}

TEST(SessionArchive, DatesAreWrittenInUtcWithMillisecondsAndZ)
{
    EXPECT_EQ(SessionArchive::encodeDate(at(0.0)), "2026-03-14T19:30:05.250Z");
    EXPECT_EQ(SessionArchive::encodeDate(at(-0.25)), "2026-03-14T19:30:05.000Z");
}

TEST(SessionArchive, DatesReadWithOrWithoutFractionalSeconds)
{
    EXPECT_EQ(SessionArchive::decodeDate("2026-03-14T19:30:05.250Z"), at(0.0));
    EXPECT_EQ(SessionArchive::decodeDate("2026-03-14T19:30:05Z"), at(-0.25));
}

TEST(SessionArchive, OtherDateFormsFailWithTheirText)
{
    for (const QString text : {"yesterday", "", "2026-03-14T19:30:05.250", "2026-03-14T19:30:05",
             "2026-03-14T20:30:05.250+01:00", "2026-03-14 19:30:05Z", "2026-03-14T19:30Z",
             "2026-03-14T19:30:05.25Z", "2026-03-14T19:30:05.250000Z", "2026-13-14T19:30:05Z",
             "2026-03-14T19:30:05.250z", " 2026-03-14T19:30:05Z"}) {
        QString error;
        EXPECT_FALSE(SessionArchive::decodeDate(text, &error).has_value()) << text.toStdString();
        EXPECT_EQ(error, "Not an ISO 8601 date: " + text);
    }
}

TEST(SessionArchive, EncodingIsCompactJsonThatDecodesToTheSameSession)
{
    const ShowSession session = sampleSession("Evening", at(0.0));
    const QByteArray json = SessionArchive::encode(session);
    EXPECT_FALSE(json.contains('\n'));
    EXPECT_FALSE(json.contains(": "));
    EXPECT_EQ(SessionArchive::decode(json), session);
}

TEST(SessionArchive, DecodingSomethingOtherThanASessionObjectYieldsNothing)
{
    EXPECT_FALSE(SessionArchive::decode("not json").has_value());
    EXPECT_FALSE(SessionArchive::decode("[1, 2]").has_value());
    EXPECT_FALSE(SessionArchive::decode("{}").has_value());
}

TEST(SessionArchive, SessionWithoutRecordingIsSavedUnderItsBaseName)
{
    MemorySessionFiles files;
    const QString root = "/home/fred/.local/share/Ostrel/Ostrel Live/Sessions";
    const ShowSession session = sampleSession("Evening", at(0.0));

    ASSERT_TRUE(SessionArchive::save(session, files, root)); // creates the missing folders

    const QString path = root + "/2026-03-14T19-30-05.json";
    EXPECT_EQ(SessionArchive::path(session, root), path);
    EXPECT_EQ(files.read(path), SessionArchive::encode(session));
    EXPECT_EQ(SessionArchive::load(path, files), session);
    EXPECT_EQ(files.filesIn(root), QStringList {"2026-03-14T19-30-05.json"});
}

TEST(SessionArchive, SessionWithRecordingIsSavedAsSessionJsonInItsFolder)
{
    MemorySessionFiles files;
    const QString root = "/show/Sessions";
    ShowSession session = sampleSession("Evening", at(0.0));
    session.recordingFolderName = "2026-03-14T19-30-05";
    ASSERT_TRUE(files.makeFolder(root + "/2026-03-14T19-30-05"));

    ASSERT_TRUE(SessionArchive::save(session, files, root));

    const QString path = root + "/2026-03-14T19-30-05/session.json";
    EXPECT_EQ(SessionArchive::load(path, files), session);
    EXPECT_TRUE(files.filesIn(root).isEmpty());
}

TEST(SessionArchive, TwoSavesWithoutRecordingFolderInTheSameSecondOverwriteOneFile)
{
    MemorySessionFiles files;
    const ShowSession first = sampleSession("First", at(-0.2));
    const ShowSession second = sampleSession("Second", at(0.7));

    ASSERT_TRUE(SessionArchive::save(first, files, "/Sessions"));
    ASSERT_TRUE(SessionArchive::save(second, files, "/Sessions"));

    EXPECT_EQ(files.filesIn("/Sessions"), QStringList {"2026-03-14T19-30-05.json"});
    const auto loaded = SessionArchive::load("/Sessions/2026-03-14T19-30-05.json", files);
    ASSERT_TRUE(loaded.has_value());
    EXPECT_EQ(loaded->name, "Second");
}

TEST(SessionArchive, SaveThatCannotCreateItsFolderFailsQuietly)
{
    MemorySessionFiles files;
    ASSERT_TRUE(files.write("/occupied", "a file, not a folder"));

    EXPECT_FALSE(
        SessionArchive::save(sampleSession("Evening", at(0.0)), files, "/occupied/Sessions"));
}

TEST(SessionArchive, SaveIntoAMissingRecordingFolderFailsQuietly)
{
    MemorySessionFiles files;
    ShowSession session = sampleSession("Evening", at(0.0));
    session.recordingFolderName = "gone";
    EXPECT_FALSE(SessionArchive::save(session, files, "/Sessions"));
}

TEST(SessionArchive, AWriteThatFailsFailsTheSave)
{
    MemorySessionFiles files;
    files.refusesWrites = true;
    EXPECT_FALSE(SessionArchive::save(sampleSession("Evening", at(0.0)), files, "/Sessions"));
}

TEST(SessionArchive, FileWithDatesLackingFractionsLoads)
{
    MemorySessionFiles files;
    const QString path = "/old.json";
    const QByteArray json = R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"Old show",
        "start":"2026-03-14T19:30:05Z","end":"2026-03-14T21:30:05Z","meterSetting":"A Fast",
        "statistics":{"energy":0,"sampleCount":0,"duration":0,"peakPower":0},
        "cues":[{"id":"0B7B0B1A-0000-4000-8000-000000000001","cueID":"Q1","number":"1",
                 "name":"Doors","type":"Audio","start":"2026-03-14T19:31:00Z",
                 "end":"2026-03-14T19:32:00.500Z","meterSetting":"A Fast",
                 "statistics":{"energy":0,"sampleCount":0,"duration":0,"peakPower":0}}],
        "levels":[{"time":"2026-03-14T19:30:06Z","leq":71.5,"maxLevel":80}]})";
    ASSERT_TRUE(files.write(path, json));

    const auto session = SessionArchive::load(path, files);

    ASSERT_TRUE(session.has_value());
    EXPECT_EQ(session->name, "Old show");
    EXPECT_EQ(session->start, at(-0.25));
    EXPECT_EQ(session->end, at(7200 - 0.25));
    ASSERT_EQ(session->cues.size(), 1u);
    EXPECT_EQ(session->cues[0].end, at(115.25));
    ASSERT_EQ(session->levels.size(), 1u);
    EXPECT_EQ(session->levels[0].maxLevel, 80.0);
}

TEST(SessionArchive, FileWithADateSuchAsYesterdayFailsAsAWhole)
{
    MemorySessionFiles files;
    const ShowSession session = sampleSession("Evening", at(0.0));
    QJsonObject json = session.toJson();
    QJsonArray levels = json.value("levels").toArray();
    levels.append(QJsonObject {{"time", "yesterday"}, {"leq", 70.0}, {"maxLevel", 75.0}});
    json.insert("levels", levels);
    const QByteArray bytes = QJsonDocument(json).toJson(QJsonDocument::Compact);
    const QString path = "/broken.json";
    ASSERT_TRUE(files.write(path, bytes));

    EXPECT_FALSE(SessionArchive::load(path, files).has_value());
    QString error;
    EXPECT_FALSE(SessionArchive::decode(bytes, &error).has_value());
    EXPECT_EQ(error, "Not an ISO 8601 date: yesterday");
}

TEST(SessionArchive, MissingOrUnreadableFileYieldsNothing)
{
    MemorySessionFiles files;
    EXPECT_FALSE(SessionArchive::load("/missing.json", files).has_value());
    ASSERT_TRUE(files.write(
        "/cut.json", SessionArchive::encode(sampleSession("Evening", at(0.0))).left(40)));
    EXPECT_FALSE(SessionArchive::load("/cut.json", files).has_value());
}
