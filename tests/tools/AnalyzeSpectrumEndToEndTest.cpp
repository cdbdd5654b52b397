// ostrel-analyze --spectrum over files the tests write themselves.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "measurement/SpectrumBand.h"
#include "support/TextLines.h"
#include "tools/AnalyzerProcess.h"
#include "tools/TestAudioFiles.h"

using namespace ostrel;
using namespace ostrel::testing;

namespace {

constexpr int rate = 48000;
constexpr double toneAmplitude = 0.1;
// The first interval whose end has 16384 samples behind it, at 48 kHz.
constexpr double firstSpectrumTime = 0.4;
constexpr double timeSlack = 1e-6;
constexpr std::size_t csvColumns = 7 + 31 + 240 + 6;

using ostrel::testsupport::lines;

// Empty cells count, so "a,,b" is three.
std::vector<std::string> cells(const std::string& line)
{
    std::vector<std::string> result;
    std::size_t start = 0;
    for (;;) {
        const auto comma = line.find(',', start);
        result.push_back(line.substr(start, comma - start));
        if (comma == std::string::npos) return result;
        start = comma + 1;
    }
}

std::vector<QJsonObject> jsonRows(const std::string& text)
{
    std::vector<QJsonObject> rows;
    for (const auto& line : lines(text)) {
        QJsonParseError error {};
        const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(line), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << line;
        rows.push_back(document.object());
    }
    return rows;
}

std::vector<float> square(double frequency, double amplitude, int sampleRate, std::size_t frames)
{
    std::vector<float> samples(frames);
    for (std::size_t index = 0; index < frames; ++index) {
        const double phase = std::fmod(frequency * static_cast<double>(index) / sampleRate, 1.0);
        samples[index] = static_cast<float>(phase < 0.5 ? amplitude : -amplitude);
    }
    return samples;
}

std::filesystem::path writeFile(
    const std::string& name, const std::vector<float>& samples, int sampleRate = rate)
{
    const auto path = fixturePath(name);
    writeWav(path, samples, 1, sampleRate, WavEncoding::float32);
    return path;
}

std::vector<QJsonObject> analyzeJson(
    const std::filesystem::path& path, std::vector<std::string> options)
{
    std::vector<std::string> arguments {path.string(), "--spectrum", "--format", "jsonl"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const auto run = runAnalyzer(arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return jsonRows(run.out);
}

// The time of the first row with a feedback frequency, or -1.
double firstFeedbackTime(const std::vector<QJsonObject>& rows)
{
    for (const auto& row : rows)
        if (!row["feedback"].isNull()) return row["time"].toDouble();
    return -1.0;
}

} // namespace

TEST(AnalyzeSpectrumEndToEndTest, SineFillsItsThirdOctaveBand)
{
    const auto path = writeFile("tone.wav", sine(1000.0, toneAmplitude, rate, 3 * rate));
    const auto rows = analyzeJson(path, {"--weighting", "Z"});
    ASSERT_EQ(rows.size(), 30u);
    const double expected = 10.0 * std::log10(toneAmplitude * toneAmplitude / 2.0);

    int measured = 0;
    for (const auto& row : rows) {
        const double time = row["time"].toDouble();
        EXPECT_EQ(row.size(), 12) << time;
        EXPECT_TRUE(row["feedback"].isNull()) << time;
        if (time < firstSpectrumTime - timeSlack) {
            for (const char* key : {"bands", "fine", "dominant", "spectralPeak"})
                EXPECT_TRUE(row[key].isNull()) << key << " at " << time;
            continue;
        }
        ++measured;
        const QJsonArray bands = row["bands"].toArray();
        ASSERT_EQ(bands.size(), 31) << time;
        EXPECT_EQ(row["fine"].toArray().size(), 240) << time;
        EXPECT_NEAR(bands[17].toDouble(), expected, 0.05) << time;
        EXPECT_LT(bands[16].toDouble(), expected - 40.0) << time;
        EXPECT_LT(bands[18].toDouble(), expected - 40.0) << time;
        EXPECT_NEAR(row["dominant"].toDouble(), 1000.0, 1.0) << time;
        const QJsonObject peak = row["spectralPeak"].toObject();
        EXPECT_NEAR(peak["frequency"].toDouble(), 1000.0, 1.0) << time;
        EXPECT_LT(peak["harmonicLevel"].toDouble(), -25.0) << time;
    }
    EXPECT_EQ(measured, 27);
}

TEST(AnalyzeSpectrumEndToEndTest, BandsAboveNyquistReadExactlyNoMeasurement)
{
    constexpr int lowRate = 32000;
    const auto path
        = writeFile("tone32k.wav", sine(1000.0, toneAmplitude, lowRate, 2 * lowRate), lowRate);
    // With the offset a measured band reads -100 dB even in silence, so -200 can only mean
    // unmeasured.
    const auto rows = analyzeJson(path, {"--offset", "100"});
    ASSERT_FALSE(rows.empty());
    const QJsonObject last = rows.back();
    const QJsonArray bands = last["bands"].toArray();
    ASSERT_EQ(bands.size(), 31);
    EXPECT_EQ(bands[30].toDouble(), -200.0);
    EXPECT_GT(bands[29].toDouble(), -150.0);

    const QJsonArray fine = last["fine"].toArray();
    ASSERT_EQ(fine.size(), 240);
    int unmeasured = 0;
    for (qsizetype index = 0; index < fine.size(); ++index) {
        const auto& band = SpectrumBand::fine()[static_cast<std::size_t>(index)];
        if (band.lower >= lowRate / 2.0) {
            EXPECT_EQ(fine[index].toDouble(), -200.0) << band.center;
            ++unmeasured;
        } else {
            EXPECT_GT(fine[index].toDouble(), -150.0) << band.center;
        }
    }
    EXPECT_GT(unmeasured, 0);

    // At 48 kHz the same band is measured.
    const auto wide = analyzeJson(
        writeFile("tone.wav", sine(1000.0, toneAmplitude, rate, rate)), {"--offset", "100"});
    ASSERT_FALSE(wide.empty());
    EXPECT_GT(wide.back()["bands"].toArray()[30].toDouble(), -150.0);
}

TEST(AnalyzeSpectrumEndToEndTest, CsvHasOneCellPerColumnInEveryRow)
{
    const auto path = writeFile("tone.wav", sine(1000.0, toneAmplitude, rate, 3 * rate));
    const auto run = runAnalyzer({path.string(), "--spectrum", "--weighting", "Z"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    const auto all = lines(run.out);
    ASSERT_EQ(all.size(), 31u);
    const auto header = cells(all.front());
    ASSERT_EQ(header.size(), csvColumns);
    EXPECT_EQ(header[7 + 17], "third_1000.0");
    EXPECT_EQ(header.back(), "feedback");

    const auto jsonl = jsonRows(
        runAnalyzer({path.string(), "--spectrum", "--weighting", "Z", "--format", "jsonl"}).out);
    ASSERT_EQ(jsonl.size(), all.size() - 1);
    for (std::size_t index = 1; index < all.size(); ++index) {
        const auto row = cells(all[index]);
        ASSERT_EQ(row.size(), csvColumns) << all[index];
        const QJsonObject& json = jsonl[index - 1];
        if (json["bands"].isNull()) {
            for (std::size_t column = 7; column < csvColumns; ++column)
                EXPECT_EQ(row[column], "") << header[column] << " at " << row[0];
            continue;
        }
        EXPECT_EQ(std::stod(row[7 + 17]), json["bands"].toArray()[17].toDouble()) << row[0];
        EXPECT_EQ(std::stod(row[7 + 31 + 239]), json["fine"].toArray()[239].toDouble()) << row[0];
        EXPECT_EQ(std::stod(row[7 + 31 + 240]), json["dominant"].toDouble()) << row[0];
        EXPECT_EQ(row.back(), "") << row[0];
    }
}

TEST(AnalyzeSpectrumEndToEndTest, SteadyPureToneBecomesFeedbackAfterASecond)
{
    const double frequency = 2000.0;
    const auto path = writeFile("ringing.wav", sine(frequency, toneAmplitude, rate, 5 * rate));
    const auto rows = analyzeJson(path, {"--offset", "100"});
    ASSERT_EQ(rows.size(), 50u);

    const double warned = firstFeedbackTime(rows);
    EXPECT_NEAR(warned, firstSpectrumTime + 1.0, 0.15);
    for (const auto& row : rows) {
        const double time = row["time"].toDouble();
        if (time < firstSpectrumTime - timeSlack) continue;
        // The tone qualifies on level: calibrated well above the detector's 55 dB.
        EXPECT_GT(row["spectralPeak"].toObject()["level"].toDouble(), 70.0) << time;
        if (time < warned - timeSlack) continue;
        ASSERT_TRUE(row["feedback"].isDouble()) << time;
        EXPECT_NEAR(row["feedback"].toDouble(), frequency, frequency * 0.01) << time;
    }

    // Uncalibrated, the same tone is too quiet to be feedback.
    EXPECT_EQ(firstFeedbackTime(analyzeJson(path, {})), -1.0);
}

TEST(AnalyzeSpectrumEndToEndTest, ToneRichInHarmonicsIsNeverFeedback)
{
    const auto path = writeFile("square.wav", square(1000.0, toneAmplitude, rate, 5 * rate));
    const auto rows = analyzeJson(path, {"--offset", "100"});
    ASSERT_EQ(rows.size(), 50u);
    EXPECT_EQ(firstFeedbackTime(rows), -1.0);

    // Loud and prominent like feedback; only its harmonics tell it apart.
    const QJsonObject peak = rows.back()["spectralPeak"].toObject();
    EXPECT_NEAR(peak["frequency"].toDouble(), 1000.0, 1.0);
    EXPECT_GT(peak["level"].toDouble(), 70.0);
    EXPECT_GT(peak["prominence"].toDouble(), 30.0);
    EXPECT_GT(peak["harmonicLevel"].toDouble(), -25.0);
}
