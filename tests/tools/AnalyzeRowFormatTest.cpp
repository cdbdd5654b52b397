#include <gtest/gtest.h>

#include <clocale>
#include <locale>
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
    result.clipped = false;
    return result;
}

} // namespace

TEST(AnalyzeRowFormatTest, CsvHeaderNamesTheColumns)
{
    EXPECT_EQ(formatHeader(OutputFormat::csv), "time,level,leq,peak,max,rawDBFS,clipped\n");
    EXPECT_EQ(formatHeader(OutputFormat::jsonl), "");
}

TEST(AnalyzeRowFormatTest, CsvRowHasFixedDecimals)
{
    EXPECT_EQ(formatRow(OutputFormat::csv, 0.1, interval()),
        "0.100,-23.02,-23.01,-20.00,-22.99,-33.01,false\n");
}

TEST(AnalyzeRowFormatTest, JsonlRowNamesEveryField)
{
    auto clipped = interval();
    clipped.clipped = true;
    EXPECT_EQ(formatRow(OutputFormat::jsonl, 12.3, clipped),
        "{\"time\":12.300,\"level\":-23.02,\"leq\":-23.01,\"peak\":-20.00,\"max\":-22.99,"
        "\"rawDBFS\":-33.01,\"clipped\":true}\n");
}

TEST(AnalyzeRowFormatTest, DecimalPointIgnoresTheLocale)
{
    struct CommaDecimal : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale previous
        = std::locale::global(std::locale(std::locale::classic(), new CommaDecimal));
    // The C library's locale too, where a comma locale is installed; many machines have none.
    const std::string previousC = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "nl_NL.UTF-8"})
        if (std::setlocale(LC_NUMERIC, name)) break;

    EXPECT_EQ(formatFixed(-23.0103, 2), "-23.01");
    EXPECT_EQ(formatRow(OutputFormat::csv, 0.1, interval()),
        "0.100,-23.02,-23.01,-20.00,-22.99,-33.01,false\n");

    std::setlocale(LC_NUMERIC, previousC.c_str());
    std::locale::global(previous);
}

TEST(AnalyzeRowFormatTest, FixedRoundsAndNeverShowsNegativeZero)
{
    EXPECT_EQ(formatFixed(1.005, 3), "1.005");
    EXPECT_EQ(formatFixed(2.0 / 3.0, 2), "0.67");
    EXPECT_EQ(formatFixed(-0.004, 2), "0.00");
    EXPECT_EQ(formatFixed(-0.006, 2), "-0.01");
    EXPECT_EQ(formatFixed(-200.0, 2), "-200.00");
    EXPECT_EQ(formatFixed(94.0, 3), "94.000");
}

TEST(AnalyzeRowFormatTest, SummaryInBothFormats)
{
    LevelStatistics statistics;
    auto first = interval();
    auto second = interval();
    second.peakPower = 0.1;
    second.maxLevel = -21.5;
    statistics.add(first);
    statistics.add(second);
    EXPECT_EQ(formatSummary(OutputFormat::csv, statistics),
        "# summary leq=-23.01 peak=-10.00 max=-21.50 duration=0.200\n");
    EXPECT_EQ(formatSummary(OutputFormat::jsonl, statistics),
        "{\"summary\":{\"leq\":-23.01,\"peak\":-10.00,\"max\":-21.50,\"duration\":0.200}}\n");
}

TEST(AnalyzeRowFormatTest, SummaryOfNothingSaysSo)
{
    const LevelStatistics empty;
    EXPECT_EQ(formatSummary(OutputFormat::csv, empty),
        "# summary leq=none peak=none max=none duration=0.000\n");
    EXPECT_EQ(formatSummary(OutputFormat::jsonl, empty),
        "{\"summary\":{\"leq\":null,\"peak\":null,\"max\":null,\"duration\":0.000}}\n");
}
