// ostrel-analyze exports a recorded show's level log and cue log as the station's CSV.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <variant>

#include <QDir>
#include <QTemporaryDir>

#include "ostrel-analyze/AnalyzeOptions.h"
#include "recording/DiskSessionFiles.h"
#include "sessions/SessionArchive.h"
#include "tools/AnalyzerProcess.h"

using namespace ostrel;
using namespace ostrel::analyze;
using ostrel::testing::runAnalyzer;

namespace {

// 2026-03-14T19:30:05Z
const Date showStart = Date {} + std::chrono::seconds(1'773'516'605);

Date at(double seconds)
{
    return addingSeconds(showStart, seconds);
}

ShowSession recordedShow()
{
    ShowSession session(QStringLiteral("Evening"), showStart, QStringLiteral("A / Fast"),
        QStringLiteral("Evening 2026-03-14"));
    session.end = at(10.0);
    session.levels = {{at(0.1), 71.26, 74.04}, {at(1.1), -0.04, 3.0}};
    CueRecord cue;
    cue.id = QUuid::createUuid();
    cue.cueID = QStringLiteral("A");
    cue.number = QStringLiteral("12");
    cue.name = QStringLiteral("Storm, then \"rain\"");
    cue.type = QStringLiteral("Audio");
    cue.start = at(2.0);
    cue.end = at(4.5);
    cue.meterSetting = QStringLiteral("A / Fast");
    session.cues = {cue};
    return session;
}

std::string readFile(const QString& path)
{
    std::ifstream in(path.toStdString(), std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

ParsedCommandLine parse(std::vector<std::string_view> arguments)
{
    return parseCommandLine(arguments);
}

class AnalyzeExportTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString recording;

    void SetUp() override
    {
        // Times in the CSV are local: pin the zone the tool runs in.
        setenv("TZ", "UTC", 1);
        const auto session = recordedShow();
        recording = SessionArchive::recordingFolder(*session.recordingFolderName, folder.path());
        ASSERT_TRUE(QDir().mkpath(recording));
        DiskSessionFiles files;
        ASSERT_TRUE(SessionArchive::save(session, files, folder.path()));
    }
};

} // namespace

TEST(AnalyzeExportOptionsTest, ExportsNameTheirCsvAndTheRecording)
{
    EXPECT_EQ(parse({"--export-levels", "out.csv", "show"}),
        ParsedCommandLine(ExportRequest {ExportRequest::Kind::levels, "out.csv", "show"}));
    EXPECT_EQ(parse({"--export-cues", "-", "show/session.json"}),
        ParsedCommandLine(ExportRequest {ExportRequest::Kind::cues, "-", "show/session.json"}));
}

TEST(AnalyzeExportOptionsTest, AnExportWithOtherArgumentsOrMissingPathsIsRefused)
{
    for (const auto& arguments : std::vector<std::vector<std::string_view>> {
             {"--export-levels", "out.csv"}, {"--export-cues", "out.csv", "show", "--summary"},
             {"tone.wav", "--export-levels", "out.csv", "show"}, {"--export-levels", "", "show"}}) {
        const auto parsed = parse(arguments);
        ASSERT_TRUE(std::holds_alternative<OptionError>(parsed));
        EXPECT_NE(std::get<OptionError>(parsed).message.find("CSV DIR"), std::string::npos);
    }
}

TEST_F(AnalyzeExportTest, TheLevelLogOfARecordingFolderBecomesCsvWithCrLf)
{
    const QString csv = folder.filePath("levels.csv");
    const auto run = runAnalyzer({"--export-levels", csv.toStdString(), recording.toStdString()});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(readFile(csv),
        "Time,Leq 1s (dB),Max (dB)\r\n"
        "2026-03-14 19:30:05,71.3,74.0\r\n"
        "2026-03-14 19:30:06,-0.0,3.0\r\n");
}

TEST_F(AnalyzeExportTest, TheCueLogGoesToStandardOutputWithItsNameQuoted)
{
    const auto run = runAnalyzer(
        {"--export-cues", "-", (recording + QStringLiteral("/session.json")).toStdString()});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    const auto lines = run.out;
    EXPECT_EQ(lines.substr(0, lines.find("\r\n")),
        "Cue Number,Cue Name,Cue Type,Start,End,Duration (s),Peak (dB),Max (dB),Leq (dB),Meter");
    EXPECT_NE(lines.find("12,\"Storm, then \"\"rain\"\"\",Audio,2026-03-14 19:30:07,"
                         "2026-03-14 19:30:09,2.5,"),
        std::string::npos)
        << lines;
}

TEST_F(AnalyzeExportTest, AFolderWithoutASessionIsAClearError)
{
    const auto run = runAnalyzer({"--export-levels", folder.filePath("out.csv").toStdString(),
        folder.filePath("none").toStdString()});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.rfind("ostrel-analyze: there is no session at ", 0), 0u) << run.err;
    EXPECT_FALSE(QFile::exists(folder.filePath("out.csv")));
}

TEST_F(AnalyzeExportTest, AFileThatIsNotASessionIsRefusedAndNothingIsWritten)
{
    const QString broken = folder.filePath("broken.json");
    {
        QFile file(broken);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(R"({"name":"x","start":"yesterday"})");
    }
    const QString csv = folder.filePath("out.csv");
    const auto run = runAnalyzer({"--export-levels", csv.toStdString(), broken.toStdString()});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_NE(run.err.find("is not a session"), std::string::npos) << run.err;
    EXPECT_FALSE(QFile::exists(csv));
}

TEST_F(AnalyzeExportTest, AnUnwritableCsvIsAClearErrorAndLeavesTheOldFile)
{
    const QString csv = folder.filePath("missing-folder/levels.csv");
    const auto run = runAnalyzer({"--export-levels", csv.toStdString(), recording.toStdString()});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.err.rfind("ostrel-analyze: cannot write ", 0), 0u) << run.err;
}
