// Runs the built ostrel-analyze over files the tests write themselves.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>

#include <QJsonDocument>
#include <QJsonObject>

#include "support/TextLines.h"
#include "tools/AnalyzerProcess.h"
#include "tools/TestAudioFiles.h"

using namespace ostrel::testing;

namespace {

constexpr double toneAmplitude = 0.1;
constexpr int rate = 48000;

struct Row {
    double time = 0.0;
    double level = 0.0;
    double leq = 0.0;
    double peak = 0.0;
    double max = 0.0;
    double rawDBFS = 0.0;
    bool clipped = false;
};

struct CsvOutput {
    std::string header;
    std::vector<Row> rows;
    std::vector<std::string> comments;
};

using ostrel::testsupport::lines;

CsvOutput parseCsv(const std::string& text)
{
    CsvOutput output;
    const auto all = lines(text);
    if (all.empty()) return output;
    output.header = all.front();
    for (std::size_t index = 1; index < all.size(); ++index) {
        const std::string& line = all[index];
        if (line.starts_with("# ")) {
            output.comments.push_back(line);
            continue;
        }
        EXPECT_TRUE(output.comments.empty()) << "a row after the summary: " << line;
        Row row;
        std::array<char, 8> clipped {};
        const int fields = std::sscanf(line.c_str(), "%lf,%lf,%lf,%lf,%lf,%lf,%7s", &row.time,
            &row.level, &row.leq, &row.peak, &row.max, &row.rawDBFS, clipped.data());
        EXPECT_EQ(fields, 7) << line;
        EXPECT_TRUE(std::string(clipped.data()) == "true" || std::string(clipped.data()) == "false")
            << line;
        row.clipped = std::string(clipped.data()) == "true";
        output.rows.push_back(row);
    }
    return output;
}

// The value of `key=` in the summary comment.
std::optional<double> summaryValue(const CsvOutput& output, const std::string& key)
{
    for (const auto& comment : output.comments) {
        if (!comment.starts_with("# summary ")) continue;
        const auto position = comment.find(" " + key + "=");
        if (position == std::string::npos) return std::nullopt;
        return std::stod(comment.substr(position + key.size() + 2));
    }
    return std::nullopt;
}

std::filesystem::path writeToneWav(const std::string& name, WavEncoding encoding,
    std::size_t frames = 3 * rate, int sampleRate = rate)
{
    const auto path = fixturePath(name);
    writeWav(path, sine(1000.0, toneAmplitude, sampleRate, frames), 1, sampleRate, encoding);
    return path;
}

void expectSettledLevel(const CsvOutput& output, double expected, double tolerance)
{
    int settled = 0;
    for (const auto& row : output.rows) {
        if (row.time <= 1.0) continue;
        EXPECT_NEAR(row.level, expected, tolerance) << "at " << row.time;
        ++settled;
    }
    EXPECT_GT(settled, 10);
}

std::string oneLine(const std::string& text)
{
    EXPECT_FALSE(text.empty());
    EXPECT_TRUE(text.ends_with('\n')) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    return text;
}

struct Codec {
    std::string name;
    std::string muxer; // empty for our own WAV writer
    std::string encoder; // or the WAV encoding: "pcm16", "float32"
    double tolerance;
    std::int64_t bitRate = 0;
};

void PrintTo(const Codec& codec, std::ostream* out)
{
    *out << codec.name;
}

std::filesystem::path writeToneFile(const Codec& codec)
{
    const std::string extension = codec.muxer.empty() ? "wav"
        : codec.muxer == "adts"                       ? "aac"
                                                      : codec.muxer;
    const auto path = fixturePath("tone-" + codec.name + "." + extension);
    const auto samples = sine(1000.0, toneAmplitude, rate, 3 * rate);
    if (codec.muxer.empty()) {
        writeWav(path, samples, 1, rate,
            codec.encoder == "pcm16" ? WavEncoding::pcm16 : WavEncoding::float32);
    } else {
        const auto error
            = encodeFile(path, codec.muxer, codec.encoder, samples, 1, rate, codec.bitRate);
        EXPECT_EQ(error, std::nullopt);
    }
    return path;
}

class AnalyzeCodecTest : public ::testing::TestWithParam<Codec> { };

} // namespace

TEST_P(AnalyzeCodecTest, SineReadsItsLevelUnweighted)
{
    const Codec& codec = GetParam();
    if (!codec.muxer.empty() && !encoderAvailable(codec.encoder))
        GTEST_SKIP() << "this FFmpeg has no " << codec.encoder << " encoder";
    const auto path = writeToneFile(codec);

    const auto run = runAnalyzer({path.string(), "--weighting", "Z", "--offset", "0", "--summary"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const auto output = parseCsv(run.out);
    EXPECT_EQ(output.header, "time,level,leq,peak,max,rawDBFS,clipped");
    expectSettledLevel(output, sineLevel(toneAmplitude), codec.tolerance);
    for (const auto& row : output.rows) {
        if (row.time <= 1.0) continue;
        EXPECT_NEAR(row.leq, sineLevel(toneAmplitude), codec.tolerance) << row.time;
        EXPECT_NEAR(row.peak, 20.0 * std::log10(toneAmplitude), codec.tolerance * 5) << row.time;
        EXPECT_FALSE(row.clipped);
    }
    const auto leq = summaryValue(output, "leq");
    ASSERT_TRUE(leq) << run.out;
    EXPECT_NEAR(*leq, sineLevel(toneAmplitude), codec.tolerance);
}

INSTANTIATE_TEST_SUITE_P(Formats, AnalyzeCodecTest,
    ::testing::Values(Codec {"wav16", "", "pcm16", 0.01}, Codec {"wavfloat", "", "float32", 0.01},
        Codec {"flac", "flac", "flac", 0.01}, Codec {"aac", "adts", "aac", 0.1, 128000},
        // LAME trims a pure tone by about half a dB below 320 kbit/s.
        Codec {"mp3", "mp3", "libmp3lame", 0.1, 320000}),
    [](const ::testing::TestParamInfo<Codec>& test) { return test.param.name; });

TEST(AnalyzeEndToEndTest, AAndCWeightingLeaveOneKilohertzAlone)
{
    const auto path = writeToneWav("tone.wav", WavEncoding::pcm16);
    for (std::string weighting : {"A", "C"}) {
        const auto run = runAnalyzer({path.string(), "--weighting", weighting, "--summary"});
        ASSERT_EQ(run.exitStatus, 0) << run.err;
        const auto output = parseCsv(run.out);
        expectSettledLevel(output, sineLevel(toneAmplitude), 0.01);
        const auto leq = summaryValue(output, "leq");
        ASSERT_TRUE(leq);
        EXPECT_NEAR(*leq, sineLevel(toneAmplitude), 0.01) << weighting;
    }
}

TEST(AnalyzeEndToEndTest, AWeightingCutsALowTone)
{
    const auto path = fixturePath("low.wav");
    writeWav(path, sine(100.0, toneAmplitude, rate, 3 * rate), 1, rate, WavEncoding::float32);
    const auto unweighted = parseCsv(runAnalyzer({path.string(), "--weighting", "Z"}).out);
    const auto weighted = parseCsv(runAnalyzer({path.string(), "--weighting", "A"}).out);
    ASSERT_FALSE(weighted.rows.empty());
    ASSERT_EQ(weighted.rows.size(), unweighted.rows.size());
    // A-weighting is about -19.1 dB at 100 Hz.
    EXPECT_NEAR(weighted.rows.back().level - unweighted.rows.back().level, -19.1, 0.5);
    // The raw column ignores weighting.
    EXPECT_DOUBLE_EQ(weighted.rows.back().rawDBFS, unweighted.rows.back().rawDBFS);
}

TEST(AnalyzeEndToEndTest, OffsetShiftsLevelsButNotRawDBFS)
{
    const auto path = writeToneWav("tone.wav", WavEncoding::float32);
    const auto plain = parseCsv(runAnalyzer({path.string(), "--weighting", "Z"}).out);
    const auto calibrated
        = parseCsv(runAnalyzer({path.string(), "--weighting", "Z", "--offset", "94.5"}).out);
    ASSERT_EQ(plain.rows.size(), calibrated.rows.size());
    ASSERT_FALSE(plain.rows.empty());
    for (std::size_t index = 0; index < plain.rows.size(); ++index) {
        EXPECT_NEAR(calibrated.rows[index].level - plain.rows[index].level, 94.5, 0.011);
        EXPECT_NEAR(calibrated.rows[index].leq - plain.rows[index].leq, 94.5, 0.011);
        EXPECT_EQ(calibrated.rows[index].rawDBFS, plain.rows[index].rawDBFS);
    }
}

TEST(AnalyzeEndToEndTest, SlowResponseRisesMoreSlowly)
{
    const auto path = writeToneWav("tone.wav", WavEncoding::float32);
    const auto fast = parseCsv(runAnalyzer({path.string(), "--response", "fast"}).out);
    const auto slow = parseCsv(runAnalyzer({path.string(), "--response", "slow"}).out);
    ASSERT_FALSE(fast.rows.empty());
    ASSERT_EQ(fast.rows.size(), slow.rows.size());
    EXPECT_LT(slow.rows.front().level, fast.rows.front().level - 3.0);
    // Leq does not depend on the detector.
    EXPECT_EQ(slow.rows.back().leq, fast.rows.back().leq);
}

TEST(AnalyzeEndToEndTest, StandardInputReadsWav)
{
    const auto path = writeToneWav("tone.wav", WavEncoding::pcm16);
    const auto fromFile = runAnalyzer({path.string(), "--weighting", "Z", "--summary"});
    const auto fromPipe
        = runAnalyzer({"-", "--weighting", "Z", "--summary"}, {.standardInput = path});
    ASSERT_EQ(fromPipe.exitStatus, 0) << fromPipe.err;
    EXPECT_EQ(fromPipe.err, "");
    expectSettledLevel(parseCsv(fromPipe.out), sineLevel(toneAmplitude), 0.01);
    EXPECT_EQ(fromPipe.out, fromFile.out);
}

TEST(AnalyzeEndToEndTest, MeasuresTheChosenChannel)
{
    const auto path = fixturePath("stereo.wav");
    const auto left = sine(1000.0, 0.1, rate, 3 * rate);
    const auto right = sine(500.0, 0.3, rate, 3 * rate);
    writeWav(path, interleave({left, right}), 2, rate, WavEncoding::float32);

    const auto first = runAnalyzer({path.string(), "--weighting", "Z"});
    const auto second = runAnalyzer({path.string(), "--weighting", "Z", "--channel", "1"});
    ASSERT_EQ(first.exitStatus, 0) << first.err;
    ASSERT_EQ(second.exitStatus, 0) << second.err;
    expectSettledLevel(parseCsv(first.out), sineLevel(0.1), 0.01);
    expectSettledLevel(parseCsv(second.out), sineLevel(0.3), 0.01);
}

TEST(AnalyzeEndToEndTest, ChannelThatDoesNotExistIsAnError)
{
    const auto path = fixturePath("stereo.wav");
    const auto tone = sine(1000.0, 0.1, rate, rate);
    writeWav(path, interleave({tone, tone}), 2, rate, WavEncoding::pcm16);

    const auto run = runAnalyzer({path.string(), "--channel", "5"});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.out, "");
    const auto message = oneLine(run.err);
    EXPECT_TRUE(message.starts_with("ostrel-analyze: ")) << message;
    EXPECT_NE(message.find("channel 5"), std::string::npos) << message;
    EXPECT_NE(message.find("2 channels"), std::string::npos) << message;

    EXPECT_EQ(runAnalyzer({path.string(), "--channel", "1"}).exitStatus, 0);
    EXPECT_EQ(runAnalyzer({path.string(), "--channel", "2"}).exitStatus, 2);
}

TEST(AnalyzeEndToEndTest, MissingFileIsAnError)
{
    const auto path = fixturePath("no-such-show.wav");
    const auto run = runAnalyzer({path.string()});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(oneLine(run.err),
        "ostrel-analyze: cannot read \"" + path.string() + "\": No such file or directory\n");
}

TEST(AnalyzeEndToEndTest, RandomBytesAreAnError)
{
    const auto path = fixturePath("garbage.wav");
    std::mt19937 random(7);
    std::ofstream out(path, std::ios::binary);
    for (int index = 0; index < 200000; ++index)
        out.put(static_cast<char>(random() & 0xff));
    out.close();

    const auto run = runAnalyzer({path.string(), "--summary"});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(oneLine(run.err).starts_with("ostrel-analyze: cannot read \"" + path.string()))
        << run.err;
}

TEST(AnalyzeEndToEndTest, BadOptionsAreErrorsBeforeAnyOutput)
{
    const auto path = writeToneWav("tone.wav", WavEncoding::pcm16);
    for (const std::vector<std::string>& arguments :
        {std::vector<std::string> {path.string(), "--weighting", "B"},
            std::vector<std::string> {path.string(), "--offset", "loud"},
            std::vector<std::string> {path.string(), "--frobnicate"},
            std::vector<std::string> {path.string(), "--format"}, std::vector<std::string> {}}) {
        const auto run = runAnalyzer(arguments);
        EXPECT_EQ(run.exitStatus, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_TRUE(oneLine(run.err).starts_with("ostrel-analyze: ")) << run.err;
    }
}

TEST(AnalyzeEndToEndTest, HelpGoesToStandardOutput)
{
    const auto run = runAnalyzer({"--help"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.starts_with("Usage: ostrel-analyze FILE")) << run.out;
}

TEST(AnalyzeEndToEndTest, OnlyWholeIntervalsAreReported)
{
    for (const int sampleRate : {48000, 44100}) {
        const std::size_t interval = static_cast<std::size_t>(sampleRate / 10);
        const std::size_t frames = 23 * interval + interval / 3;
        const auto path = writeToneWav(
            "odd" + std::to_string(sampleRate) + ".wav", WavEncoding::pcm16, frames, sampleRate);
        const auto run = runAnalyzer({path.string(), "--summary"});
        ASSERT_EQ(run.exitStatus, 0) << run.err;
        const auto output = parseCsv(run.out);
        ASSERT_EQ(output.rows.size(), frames / interval) << sampleRate;

        const auto rows = lines(run.out);
        EXPECT_TRUE(rows[1].starts_with("0.100,")) << sampleRate << ": " << rows[1];
        EXPECT_TRUE(rows[23].starts_with("2.300,")) << sampleRate << ": " << rows[23];
        for (std::size_t index = 0; index < output.rows.size(); ++index)
            EXPECT_NEAR(output.rows[index].time, 0.1 * static_cast<double>(index + 1), 1e-9);
        const auto duration = summaryValue(output, "duration");
        ASSERT_TRUE(duration);
        EXPECT_NEAR(*duration, 2.3, 1e-9);
    }
}

TEST(AnalyzeEndToEndTest, FileShorterThanAnIntervalHasNoRows)
{
    const auto path = writeToneWav("short.wav", WavEncoding::pcm16, 4799);
    const auto run = runAnalyzer({path.string(), "--summary"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.out,
        "time,level,leq,peak,max,rawDBFS,clipped\n"
        "# summary leq=none peak=none max=none duration=0.000\n");
}

TEST(AnalyzeEndToEndTest, JsonlCarriesTheSameNumbersAsCsv)
{
    const auto path = writeToneWav("tone.wav", WavEncoding::pcm16, 15 * 4800);
    const auto csv = parseCsv(runAnalyzer({path.string(), "--summary"}).out);
    const auto run = runAnalyzer({path.string(), "--format", "jsonl", "--summary"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    const auto jsonLines = lines(run.out);
    ASSERT_EQ(jsonLines.size(), csv.rows.size() + 1);

    for (std::size_t index = 0; index < csv.rows.size(); ++index) {
        QJsonParseError error {};
        const auto document
            = QJsonDocument::fromJson(QByteArray::fromStdString(jsonLines[index]), &error);
        ASSERT_EQ(error.error, QJsonParseError::NoError) << jsonLines[index];
        const QJsonObject row = document.object();
        EXPECT_EQ(row.size(), 7);
        const Row& expected = csv.rows[index];
        EXPECT_EQ(row["time"].toDouble(), expected.time);
        EXPECT_EQ(row["level"].toDouble(), expected.level);
        EXPECT_EQ(row["leq"].toDouble(), expected.leq);
        EXPECT_EQ(row["peak"].toDouble(), expected.peak);
        EXPECT_EQ(row["max"].toDouble(), expected.max);
        EXPECT_EQ(row["rawDBFS"].toDouble(), expected.rawDBFS);
        ASSERT_TRUE(row["clipped"].isBool());
        EXPECT_EQ(row["clipped"].toBool(), expected.clipped);
    }

    QJsonParseError error {};
    const auto last = QJsonDocument::fromJson(QByteArray::fromStdString(jsonLines.back()), &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError) << jsonLines.back();
    const QJsonObject summary = last.object()["summary"].toObject();
    EXPECT_EQ(summary["leq"].toDouble(), *summaryValue(csv, "leq"));
    EXPECT_EQ(summary["peak"].toDouble(), *summaryValue(csv, "peak"));
    EXPECT_EQ(summary["max"].toDouble(), *summaryValue(csv, "max"));
    EXPECT_EQ(summary["duration"].toDouble(), 1.5);
}

TEST(AnalyzeEndToEndTest, ClippingIsFlagged)
{
    const auto path = fixturePath("loud.wav");
    writeWav(path, sine(1000.0, 1.0, rate, rate), 1, rate, WavEncoding::float32);
    const auto loud = parseCsv(runAnalyzer({path.string()}).out);
    ASSERT_FALSE(loud.rows.empty());
    EXPECT_TRUE(loud.rows.back().clipped);
    const auto quiet
        = parseCsv(runAnalyzer({writeToneWav("tone.wav", WavEncoding::float32).string()}).out);
    ASSERT_FALSE(quiet.rows.empty());
    EXPECT_FALSE(quiet.rows.back().clipped);
}

TEST(AnalyzeEndToEndTest, LongFileShowsProgressOnlyOnATerminal)
{
    const int lowRate = 8000;
    const auto path = writeToneWav("long.wav", WavEncoding::pcm16, 70 * lowRate, lowRate);

    const auto logged = runAnalyzer({path.string()});
    ASSERT_EQ(logged.exitStatus, 0);
    EXPECT_EQ(logged.err, "");

    const auto watched = runAnalyzer(
        {path.string()}, {.standardInput = std::nullopt, .standardErrorOnTerminal = true});
    ASSERT_EQ(watched.exitStatus, 0);
    EXPECT_EQ(watched.out, logged.out);
    EXPECT_NE(watched.err.find("\rostrel-analyze: 50%"), std::string::npos) << watched.err;
    EXPECT_EQ(watched.err.find('\n'), std::string::npos) << watched.err;
    // Cleared at the end: the last thing written is blanks back to the start of the line.
    ASSERT_GE(watched.err.size(), 2u);
    EXPECT_EQ(watched.err.back(), '\r');
    const auto lastText = watched.err.rfind("ostrel-analyze: ");
    ASSERT_NE(lastText, std::string::npos);
    const auto blanks = watched.err.substr(watched.err.rfind('\r', watched.err.size() - 2) + 1);
    EXPECT_EQ(blanks.find_first_not_of(' '), blanks.size() - 1) << "not cleared: " << watched.err;
}

TEST(AnalyzeEndToEndTest, ShortFileShowsNoProgressEvenOnATerminal)
{
    const auto path = writeToneWav("tone.wav", WavEncoding::pcm16);
    const auto run = runAnalyzer(
        {path.string()}, {.standardInput = std::nullopt, .standardErrorOnTerminal = true});
    ASSERT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.err, "");
}

TEST(AnalyzeEndToEndTest, CorruptPacketsAreSkippedWithAWarning)
{
    const auto path = fixturePath("damaged.flac");
    ASSERT_EQ(
        encodeFile(path, "flac", "flac", sine(1000.0, toneAmplitude, rate, 3 * rate), 1, rate),
        std::nullopt);
    const auto clean = runAnalyzer({path.string()});
    ASSERT_EQ(clean.exitStatus, 0) << clean.err;
    EXPECT_EQ(clean.err, "");

    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekg(0, std::ios::end);
    const auto size = static_cast<std::streamoff>(file.tellg());
    file.seekp(size / 2);
    std::mt19937 random(3);
    for (int index = 0; index < 2000; ++index)
        file.put(static_cast<char>(random() & 0xff));
    file.close();

    const auto damaged = runAnalyzer({path.string()});
    EXPECT_EQ(damaged.exitStatus, 0);
    EXPECT_TRUE(oneLine(damaged.err).starts_with("ostrel-analyze: warning: skipped "))
        << damaged.err;
    EXPECT_LT(parseCsv(damaged.out).rows.size(), parseCsv(clean.out).rows.size());
}
