// ostrel-analyze --exposure: every row and the summary say how a file stands against a venue's
// limit, A-weighted whatever --weighting says.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <vector>

#include <QJsonDocument>
#include <QJsonObject>

#include "support/TextLines.h"
#include "tools/AnalyzerProcess.h"
#include "tools/TestAudioFiles.h"

using namespace ostrel::testing;
using ostrel::testsupport::lines;

namespace {

constexpr int rate = 48000;

// Cells of a CSV line.
std::vector<std::string> cells(const std::string& line)
{
    std::vector<std::string> result;
    std::stringstream stream(line);
    std::string cell;
    while (std::getline(stream, cell, ','))
        result.push_back(cell);
    if (line.ends_with(',')) result.emplace_back();
    return result;
}

std::string summaryField(const std::string& comment, const std::string& key)
{
    const auto at = comment.find(" " + key + "=");
    if (at == std::string::npos) return "(missing)";
    const auto start = at + key.size() + 2;
    return comment.substr(start, comment.find(' ', start) - start);
}

// Ten seconds of 1 kHz at amplitude 0.1: 96.99 dB(A) with an offset of 120.
std::filesystem::path loudTone()
{
    const auto path = fixturePath("exposure-tone.wav");
    writeWav(path, sine(1000.0, 0.1, rate, 10 * rate), 1, rate, WavEncoding::float32);
    return path;
}

} // namespace

TEST(AnalyzeExposure, RowsGainTheWindowsLevelThePeakAndTheRoomLeft)
{
    const auto path = loudTone();
    const auto run = runAnalyzer({path.string(), "--offset", "120", "--exposure", "who"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    const auto all = lines(run.out);
    ASSERT_GE(all.size(), 100u);
    EXPECT_EQ(all.front(), "time,level,leq,peak,max,rawDBFS,clipped,laeqWindow,lcpeak,room");
    const auto last = cells(all.back());
    ASSERT_EQ(last.size(), 10u) << all.back();
    // A steady tone: the window's level is its level; the peak a sine's, 3 dB above.
    EXPECT_NEAR(std::stod(last[7]), 96.99, 0.02);
    EXPECT_NEAR(std::stod(last[8]), 100.0, 0.05);
    // Ten seconds at 97 dB in a 15-minute window: room for (900 x 10^10 - 10 x 10^9.7) / 300.
    const double energy = 10.0 * std::pow(10.0, 9.699);
    EXPECT_NEAR(std::stod(last[9]), 10.0 * std::log10((900.0 * 1e10 - energy) / 300.0), 0.05);
}

TEST(AnalyzeExposure, TheExposureIsAWeightedWhateverTheMeterWeighting)
{
    const auto path = fixturePath("exposure-low.wav");
    writeWav(path, sine(100.0, 0.1, rate, 3 * rate), 1, rate, WavEncoding::float32);
    const auto z = runAnalyzer({path.string(), "--offset", "120", "--weighting", "Z", "--exposure",
        "who", "--format", "jsonl"});
    const auto a = runAnalyzer({path.string(), "--offset", "120", "--weighting", "A", "--exposure",
        "who", "--format", "jsonl"});
    ASSERT_EQ(z.exitStatus, 0) << z.err;
    ASSERT_EQ(a.exitStatus, 0) << a.err;
    const auto zRow = QJsonDocument::fromJson(QByteArray::fromStdString(lines(z.out).back()));
    const auto aRow = QJsonDocument::fromJson(QByteArray::fromStdString(lines(a.out).back()));
    EXPECT_EQ(zRow["laeqWindow"].toDouble(), aRow["laeqWindow"].toDouble());
    EXPECT_EQ(zRow["room"].toDouble(), aRow["room"].toDouble());
    // 100 Hz loses about 19 dB under A, which the meter's Z reading keeps.
    EXPECT_GT(zRow["leq"].toDouble() - zRow["laeqWindow"].toDouble(), 18.0);
}

TEST(AnalyzeExposure, ALimitOutOfReachLeavesTheRoomEmptyOrNull)
{
    const auto path = loudTone();
    // 147 dB for ten seconds is more than a 15-minute window at 100 dB holds.
    const auto csv = runAnalyzer({path.string(), "--offset", "150", "--exposure", "who"});
    ASSERT_EQ(csv.exitStatus, 0) << csv.err;
    EXPECT_TRUE(lines(csv.out).back().ends_with(",")) << lines(csv.out).back();
    const auto jsonl
        = runAnalyzer({path.string(), "--offset", "150", "--exposure", "who", "--format", "jsonl"});
    ASSERT_EQ(jsonl.exitStatus, 0) << jsonl.err;
    const auto row = QJsonDocument::fromJson(QByteArray::fromStdString(lines(jsonl.out).back()));
    EXPECT_TRUE(row["room"].isNull());
    EXPECT_TRUE(row["laeqWindow"].isDouble());
}

TEST(AnalyzeExposure, TheSummaryTellsTheHighestWindowTheTimeOverThePeakTheShowAndTheDose)
{
    // Five seconds growing louder from 106.5 to 110 dB, then five nearly silent: the level since
    // the start is highest at the end of the fifth second, and stays over 100 dB to the end.
    std::vector<float> ramp(static_cast<std::size_t>(10 * rate));
    for (std::size_t i = 0; i < ramp.size(); ++i) {
        const double t = static_cast<double>(i) / rate;
        const double amplitude = t < 5.0 ? 0.06 + 0.04 * t / 5.0 : 0.001;
        ramp[i] = static_cast<float>(amplitude * std::sin(2.0 * M_PI * 1000.0 * t));
    }
    const auto path = fixturePath("exposure-ramp.wav");
    writeWav(path, ramp, 1, rate, WavEncoding::float32);
    const auto run = runAnalyzer(
        {path.string(), "--offset", "130", "--exposure", "custom:1:100", "--summary"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    const std::string comment = lines(run.out).back();
    ASSERT_TRUE(comment.starts_with("# summary ")) << comment;
    EXPECT_EQ(summaryField(comment, "laeqWindowMaxAt"), "5.000");
    EXPECT_EQ(summaryField(comment, "minutesOver"), "0.2");
    // The loudest sine peak: amplitude 0.1 is 110 dB with this offset.
    EXPECT_NEAR(std::stod(summaryField(comment, "lcpeakMax")), 110.0, 0.5);
    const double show = std::stod(summaryField(comment, "laeqShow"));
    EXPECT_GT(std::stod(summaryField(comment, "laeqWindowMax")), show);
    // The dose is the show's level over its ten seconds against 85 dB(A) for 8 hours.
    const double dose = 100.0 * (10.0 / 28800.0) * std::pow(10.0, (show - 85.0) / 10.0);
    EXPECT_NEAR(std::stod(summaryField(comment, "dosePercent")), dose, 0.06 + dose * 1e-3);
}

TEST(AnalyzeExposure, TheJsonlSummaryCarriesTheSameKeys)
{
    const auto path = loudTone();
    const auto run = runAnalyzer(
        {path.string(), "--offset", "120", "--exposure", "din", "--summary", "--format", "jsonl"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    const auto summary
        = QJsonDocument::fromJson(QByteArray::fromStdString(lines(run.out).back()))["summary"];
    for (const char* key :
        {"laeqWindowMax", "laeqWindowMaxAt", "minutesOver", "lcpeakMax", "laeqShow", "dosePercent"})
        EXPECT_TRUE(summary[key].isDouble()) << key;
}

TEST(AnalyzeExposure, AnUnknownProfileExitsTwoWithAClearMessage)
{
    const auto path = loudTone();
    for (const char* profile : {"osha", "custom:0:100", "custom:15", "WHO", ""}) {
        const auto run = runAnalyzer({path.string(), "--exposure", profile});
        EXPECT_EQ(run.exitStatus, 2) << profile;
        EXPECT_NE(run.err.find("bad exposure profile"), std::string::npos) << run.err;
        EXPECT_TRUE(run.out.empty());
    }
}
