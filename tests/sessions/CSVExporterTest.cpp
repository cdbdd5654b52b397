#include <gtest/gtest.h>

#include <QStringList>

#include "sessions/CSVExporter.h"
#include "sessions/CueTracker.h"
#include "sessions/SessionSamples.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

const QString cueHeader = "Cue Number,Cue Name,Cue Type,Start,End,Duration (s),Peak (dB),"
                          "Max (dB),Leq (dB),Meter\r\n";
const QTimeZone plusOne(3600);

CueRecord record(const QString& name)
{
    CueRecord result;
    result.id = QUuid::createUuid();
    result.cueID = "Q";
    result.number = "4";
    result.name = name;
    result.type = "Audio";
    result.start = at(0.0);
    result.end = at(12.34);
    result.meterSetting = "LAeq Fast";
    return result;
}

QStringList rowsOf(const QString& text)
{
    QStringList rows = text.split("\r\n");
    EXPECT_EQ(rows.takeLast(), QString()); // the text ends in CR LF
    return rows;
}

} // namespace

TEST(CSVExporter, NoRecordsGiveTheHeaderRowAndCrLf)
{
    EXPECT_EQ(CSVExporter::cues({}, at(0.0), plusOne), cueHeader);
    EXPECT_EQ(CSVExporter::levels({}, plusOne), "Time,Leq 1s (dB),Max (dB)\r\n");
}

TEST(CSVExporter, CueRowHoldsEveryColumnInLocalTime)
{
    CueRecord cue = record("Storm");
    cue.statistics.add(interval(85.0));
    cue.statistics.add(interval(95.0));

    const QString text = CSVExporter::cues({cue}, at(1000.0), plusOne);

    EXPECT_EQ(text,
        cueHeader
            + "4,Storm,Audio,2026-03-14 20:30:05,2026-03-14 20:30:17,12.3,98.0,96.0,"
              "92.4,LAeq Fast\r\n");
}

TEST(CSVExporter, RowsFollowTheOrderGiven)
{
    CueRecord first = record("First");
    first.number = "9";
    CueRecord second = record("Second");
    second.number = "1";
    const QStringList rows = rowsOf(CSVExporter::cues({first, second}, at(0.0), plusOne));
    ASSERT_EQ(rows.size(), 3);
    EXPECT_TRUE(rows[1].startsWith("9,First,"));
    EXPECT_TRUE(rows[2].startsWith("1,Second,"));
}

TEST(CSVExporter, NameWithCommaAndQuotesIsQuotedWithQuotesDoubled)
{
    const QStringList rows
        = rowsOf(CSVExporter::cues({record(R"(Intro, "loud")")}, at(0.0), plusOne));
    ASSERT_EQ(rows.size(), 2);
    EXPECT_TRUE(rows[1].startsWith(R"(4,"Intro, ""loud""",Audio,)"));
}

TEST(CSVExporter, NameWithALineBreakIsQuoted)
{
    const QString text = CSVExporter::cues({record("Act one\nends")}, at(0.0), plusOne);
    EXPECT_TRUE(text.contains("\r\n4,\"Act one\nends\",Audio,"));
}

TEST(CSVExporter, EveryKindOfNewlineIsQuoted)
{
    for (const char16_t newline : {u'\n', u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029'}) {
        const QString field = QStringLiteral("a") + QChar(newline) + QStringLiteral("b");
        EXPECT_EQ(CSVExporter::escape(field), '"' + field + '"') << int(newline);
    }
}

TEST(CSVExporter, FieldWithoutSpecialCharactersStandsAsItIs)
{
    for (const QString field : {"", "Plain name", "semi;colon", "tab\there", "it's", "  spaced "})
        EXPECT_EQ(CSVExporter::escape(field), field);
    EXPECT_EQ(CSVExporter::escape("\"quoted\""), "\"\"\"quoted\"\"\"");
}

TEST(CSVExporter, CueWithoutSamplesHasEmptyLevelsButADuration)
{
    const QStringList rows = rowsOf(CSVExporter::cues({record("Silent")}, at(0.0), plusOne));
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[1], "4,Silent,Audio,2026-03-14 20:30:05,2026-03-14 20:30:17,12.3,,,,LAeq Fast");
}

TEST(CSVExporter, CueWithSamplesButNoMaxHasAnEmptyMaxOnly)
{
    CueRecord cue = record("Loaded");
    cue.statistics.add(interval(85.0));
    cue.statistics.maxLevel.reset(); // as a file without "maxLevel" reads
    const QStringList fields = rowsOf(CSVExporter::cues({cue}, at(0.0), plusOne))[1].split(',');
    ASSERT_EQ(fields.size(), 10);
    EXPECT_EQ(fields[6], "88.0");
    EXPECT_EQ(fields[7], "");
    EXPECT_EQ(fields[8], "85.0");
}

TEST(CSVExporter, RunningCueInASnapshotHasItsEndSet)
{
    CueTracker tracker;
    tracker.update({cue("A", "7", "Underscore")}, at(0.0));
    const auto snapshot = tracker.activeSnapshot(at(30.0));

    const QStringList fields
        = rowsOf(CSVExporter::cues(snapshot, at(500.0), plusOne))[1].split(',');

    EXPECT_EQ(fields[4], "2026-03-14 20:30:35");
    EXPECT_EQ(fields[5], "30.0");
}

TEST(CSVExporter, RecordWithoutEndShowsAnEmptyEndAndADurationUpToNow)
{
    CueRecord cue = record("Running");
    cue.end.reset();
    const QStringList fields = rowsOf(CSVExporter::cues({cue}, at(75.06), plusOne))[1].split(',');
    EXPECT_EQ(fields[4], "");
    EXPECT_EQ(fields[5], "75.1");
}

TEST(CSVExporter, LevelsAreWrittenAsPrintfOneDecimalDoes)
{
    EXPECT_EQ(CSVExporter::level(-0.04), "-0.0");
    EXPECT_EQ(CSVExporter::level(0.0), "0.0");
    EXPECT_EQ(CSVExporter::level(94.0), "94.0");
    EXPECT_EQ(CSVExporter::level(0.25), "0.2"); // exactly halfway: to even, like printf
    EXPECT_EQ(CSVExporter::level(0.35), "0.3"); // 0.35 is a little below in binary
    EXPECT_EQ(CSVExporter::level(-200.0), "-200.0");
    EXPECT_EQ(CSVExporter::level(123456.789), "123456.8");
}

TEST(CSVExporter, TimestampIsLocalToTheSecondWithoutZone)
{
    EXPECT_EQ(CSVExporter::timestamp(at(0.9), QTimeZone::utc()), "2026-03-14 19:30:06");
    EXPECT_EQ(CSVExporter::timestamp(at(0.7), QTimeZone::utc()), "2026-03-14 19:30:05");
    EXPECT_EQ(CSVExporter::timestamp(at(0.0), plusOne), "2026-03-14 20:30:05");
    EXPECT_EQ(CSVExporter::timestamp(at(0.0), QTimeZone(-10 * 3600)), "2026-03-14 09:30:05");
    EXPECT_EQ(CSVExporter::timestamp(at(0.0), QTimeZone(14 * 3600)), "2026-03-15 09:30:05");
}

TEST(CSVExporter, LevelRowsHoldTimeLeqAndMax)
{
    const std::vector<LevelLogEntry> entries {{at(0.0), 81.26, 90.04}, {at(1.0), -0.04, 70.0}};
    EXPECT_EQ(CSVExporter::levels(entries, plusOne),
        "Time,Leq 1s (dB),Max (dB)\r\n"
        "2026-03-14 20:30:05,81.3,90.0\r\n"
        "2026-03-14 20:30:06,-0.0,70.0\r\n");
}

TEST(CSVExporter, TimestampFollowsSummerTimeOfANamedZone)
{
    const QTimeZone berlin("Europe/Berlin");
    if (!berlin.isValid()) GTEST_SKIP() << "no time zone data on this machine";
    EXPECT_EQ(CSVExporter::timestamp(at(0.0), berlin), "2026-03-14 20:30:05");
    EXPECT_EQ(CSVExporter::timestamp(at(120.0 * 86400), berlin), "2026-07-12 21:30:05");
}
