// The columns --spectrum adds, as RowFormatter writes them.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "ostrel-analyze/RowFormatter.h"

using namespace ostrel;
using namespace ostrel::analyze;

namespace {

// 4800 samples at 48 kHz; energy and peak are calibrated powers, so 0.005 per sample is -23.01 dB.
MeasurementInterval interval()
{
    MeasurementInterval result;
    result.sampleCount = 4800;
    result.sampleRate = 48000.0;
    result.energy = 4800 * 0.005;
    result.peakPower = 0.01;
    result.maxLevel = -22.987;
    result.level = -23.024;
    result.rawEnergy = 4800 * 0.0005;
    return result;
}

// Distinct values at both ends and at 1 kHz, so that a shifted or reversed column shows.
Spectrum spectrum()
{
    Spectrum result;
    result.bandLevels.fill(20.0);
    result.bandLevels[0] = -3.456;
    result.bandLevels[17] = 94.004;
    result.bandLevels[30] = -200.0;
    result.fineBandLevels.fill(10.5);
    result.fineBandLevels[0] = 12.346;
    result.fineBandLevels[239] = -200.0;
    result.dominantFrequency = 1000.04;
    result.peak = SpectralPeak {999.96, 78.456, 31.2, -40.0};
    return result;
}

std::string repeated(const std::string& text, int count)
{
    std::string result;
    for (int index = 0; index < count; ++index)
        result += text;
    return result;
}

const std::string levelsCsv = "0.500,-23.02,-23.01,-20.00,-22.99,-33.01,false";
const std::string levelsJson = "{\"time\":0.500,\"level\":-23.02,\"leq\":-23.01,\"peak\":-20.00,"
                               "\"max\":-22.99,\"rawDBFS\":-33.01,\"clipped\":false";

std::size_t count(const std::string& text, char wanted)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), wanted));
}

} // namespace

TEST(AnalyzeSpectrumColumnsTest, CsvHeaderNamesEveryBandByItsCentre)
{
    const std::string header = formatHeader(OutputFormat::csv, true);
    EXPECT_TRUE(
        header.starts_with("time,level,leq,peak,max,rawDBFS,clipped,third_20.0,third_25.1,"))
        << header;
    EXPECT_NE(header.find(",third_794.3,third_1000.0,third_1258.9,"), std::string::npos);
    EXPECT_NE(header.find(",third_15848.9,third_19952.6,fine_20.0,"), std::string::npos);
    EXPECT_NE(header.find(",fine_985.7,fine_1014.5,"), std::string::npos);
    EXPECT_TRUE(header.ends_with(",fine_19869.7,dominant,peakFrequency,peakLevel,peakProminence,"
                                 "peakHarmonic,feedback\n"))
        << header;
    EXPECT_EQ(count(header, ','), 7u + 31u + 240u + 6u - 1u);
    EXPECT_EQ(count(header, '\n'), 1u);
}

TEST(AnalyzeSpectrumColumnsTest, HeaderWithoutSpectrumIsUnchanged)
{
    EXPECT_EQ(formatHeader(OutputFormat::csv, false), "time,level,leq,peak,max,rawDBFS,clipped\n");
    EXPECT_EQ(formatHeader(OutputFormat::jsonl, true), "");
}

TEST(AnalyzeSpectrumColumnsTest, CsvRowCarriesTheSpectrum)
{
    auto measured = interval();
    measured.spectrum = spectrum();
    const std::string expected = levelsCsv + ",-3.46" + repeated(",20.00", 16) + ",94.00"
        + repeated(",20.00", 12) + ",-200.00" + ",12.35" + repeated(",10.50", 238) + ",-200.00"
        + ",1000.0,1000.0,78.46,31.20,-40.00,1001.3\n";
    EXPECT_EQ(formatRow(OutputFormat::csv, 0.5, measured, SpectrumExtras {1001.26}), expected);
}

TEST(AnalyzeSpectrumColumnsTest, JsonlRowCarriesTheSpectrumAsArrays)
{
    auto measured = interval();
    measured.spectrum = spectrum();
    const std::string expected = levelsJson + ",\"bands\":[-3.46" + repeated(",20.00", 16)
        + ",94.00" + repeated(",20.00", 12) + ",-200.00],\"fine\":[12.35" + repeated(",10.50", 238)
        + ",-200.00],\"dominant\":1000.0,\"spectralPeak\":{\"frequency\":1000.0,\"level\":78.46,"
          "\"prominence\":31.20,\"harmonicLevel\":-40.00},\"feedback\":1001.3}\n";
    EXPECT_EQ(formatRow(OutputFormat::jsonl, 0.5, measured, SpectrumExtras {1001.26}), expected);
}

TEST(AnalyzeSpectrumColumnsTest, NoSpectrumYetLeavesTheColumnsEmpty)
{
    const auto early = interval();
    EXPECT_EQ(formatRow(OutputFormat::csv, 0.5, early, SpectrumExtras {}),
        levelsCsv + repeated(",", 31 + 240 + 6) + "\n");
    EXPECT_EQ(formatRow(OutputFormat::jsonl, 0.5, early, SpectrumExtras {}),
        levelsJson
            + ",\"bands\":null,\"fine\":null,\"dominant\":null,\"spectralPeak\":null,"
              "\"feedback\":null}\n");
}

TEST(AnalyzeSpectrumColumnsTest, SpectrumWithoutPeakOrFeedbackLeavesThoseEmpty)
{
    auto quiet = interval();
    quiet.spectrum = spectrum();
    quiet.spectrum->dominantFrequency.reset();
    quiet.spectrum->peak.reset();

    const std::string csv = formatRow(OutputFormat::csv, 0.5, quiet, SpectrumExtras {});
    EXPECT_TRUE(csv.ends_with(",10.50,-200.00,,,,,,\n")) << csv;
    EXPECT_EQ(count(csv, ','), 6u + 31u + 240u + 6u);

    const std::string json = formatRow(OutputFormat::jsonl, 0.5, quiet, SpectrumExtras {});
    EXPECT_TRUE(json.ends_with(",-200.00],\"dominant\":null,\"spectralPeak\":null,"
                               "\"feedback\":null}\n"))
        << json;
}

TEST(AnalyzeSpectrumColumnsTest, RowsWithoutTheOptionIgnoreTheSpectrum)
{
    auto measured = interval();
    measured.spectrum = spectrum();
    EXPECT_EQ(formatRow(OutputFormat::csv, 0.5, measured), levelsCsv + "\n");
    EXPECT_EQ(formatRow(OutputFormat::jsonl, 0.5, measured), levelsJson + "}\n");
}
