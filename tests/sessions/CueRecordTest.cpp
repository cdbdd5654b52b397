#include <gtest/gtest.h>

#include <QJsonArray>

#include "sessions/CueRecord.h"
#include "sessions/SessionSamples.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

CueRecord sampleRecord()
{
    CueRecord record;
    record.id = QUuid::fromString(QStringLiteral("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"));
    record.cueID = "3F2A-11";
    record.number = "12.5";
    record.name = "Storm";
    record.type = "Audio";
    record.start = at(0.0);
    record.meterSetting = "LAeq Fast";
    record.statistics.add(interval(85.0));
    return record;
}

} // namespace

TEST(CueRecord, DurationOfARunningRecordLastsUntilTheDateGiven)
{
    const CueRecord record = sampleRecord();
    EXPECT_DOUBLE_EQ(record.duration(at(12.5)), 12.5);
}

TEST(CueRecord, DurationWithEndSetIgnoresTheDateGiven)
{
    CueRecord record = sampleRecord();
    record.end = at(4.0);
    EXPECT_DOUBLE_EQ(record.duration(at(100.0)), 4.0);
    EXPECT_DOUBLE_EQ(record.duration(at(-50.0)), 4.0);
}

TEST(CueRecord, JsonUsesTheFieldNamesAndIsoDates)
{
    CueRecord record = sampleRecord();
    record.end = at(61.5);
    const QJsonObject json = record.toJson();

    EXPECT_EQ(json.value("id").toString(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(json.value("cueID").toString(), "3F2A-11");
    EXPECT_EQ(json.value("number").toString(), "12.5");
    EXPECT_EQ(json.value("name").toString(), "Storm");
    EXPECT_EQ(json.value("type").toString(), "Audio");
    EXPECT_EQ(json.value("start").toString(), "2026-03-14T19:30:05.250Z");
    EXPECT_EQ(json.value("end").toString(), "2026-03-14T19:31:06.750Z");
    EXPECT_EQ(json.value("meterSetting").toString(), "LAeq Fast");
    EXPECT_EQ(json.value("statistics").toObject(), record.statistics.toJson());
    EXPECT_EQ(json.size(), 9);
}

TEST(CueRecord, RunningRecordLeavesEndOutOfItsJson)
{
    const QJsonObject json = sampleRecord().toJson();
    EXPECT_FALSE(json.contains("end"));
    EXPECT_EQ(json.size(), 8);
}

TEST(CueRecord, JsonRoundTripsWithAndWithoutEnd)
{
    CueRecord record = sampleRecord();
    EXPECT_EQ(CueRecord::fromJson(record.toJson()), record);
    record.end = at(3.125);
    EXPECT_EQ(CueRecord::fromJson(record.toJson()), record);
}

TEST(CueRecord, NullEndReadsAsRunning)
{
    QJsonObject json = sampleRecord().toJson();
    json.insert("end", QJsonValue::Null);
    const auto record = CueRecord::fromJson(json);
    ASSERT_TRUE(record.has_value());
    EXPECT_FALSE(record->end.has_value());
}

TEST(CueRecord, EveryRequiredKeyIsNeeded)
{
    for (const char* key :
        {"id", "cueID", "number", "name", "type", "start", "meterSetting", "statistics"}) {
        QJsonObject json = sampleRecord().toJson();
        json.remove(QLatin1String(key));
        QString error;
        EXPECT_FALSE(CueRecord::fromJson(json, &error).has_value()) << key;
        EXPECT_FALSE(error.isEmpty()) << key;
    }
}

TEST(CueRecord, ValueOfTheWrongTypeFailsToRead)
{
    const std::vector<std::pair<const char*, QJsonValue>> wrong {{"id", 12}, {"id", "not-a-uuid"},
        {"id", "{e621e1f8-c36c-495a-93fc-0c247a3e6e5f}"}, {"number", 12},
        {"name", QJsonValue::Null}, {"start", 1234.5}, {"end", true},
        {"statistics", QJsonArray {}}};
    for (const auto& [key, value] : wrong) {
        QJsonObject json = sampleRecord().toJson();
        json.insert(QLatin1String(key), value);
        EXPECT_FALSE(CueRecord::fromJson(json).has_value()) << key;
    }
}

TEST(CueRecord, LowerCaseUuidReads)
{
    QJsonObject json = sampleRecord().toJson();
    json.insert("id", "e621e1f8-c36c-495a-93fc-0c247a3e6e5f");
    const auto record = CueRecord::fromJson(json);
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->id, sampleRecord().id);
}

TEST(CueRecord, BadDateNamesItselfInTheError)
{
    QJsonObject json = sampleRecord().toJson();
    json.insert("end", "tomorrow");
    QString error;
    EXPECT_FALSE(CueRecord::fromJson(json, &error).has_value());
    EXPECT_EQ(error, "Not an ISO 8601 date: tomorrow");
}

TEST(CueRecord, AMarkerIsTheCueNumberOrItsNameWhereTheNumberIsEmpty)
{
    CueRecord record = sampleRecord();
    record.number = "12";
    record.name = "Preshow";
    EXPECT_EQ(record.markerLabel(), "12");
    record.number.clear();
    EXPECT_EQ(record.markerLabel(), "Preshow");
}
