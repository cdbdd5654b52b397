#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "ostrel-analyze/AnalyzeOptions.h"

using namespace ostrel;
using namespace ostrel::analyze;

namespace {

ParsedCommandLine parse(std::vector<std::string_view> arguments)
{
    return parseCommandLine(arguments);
}

AnalyzeOptions options(std::vector<std::string_view> arguments)
{
    const auto parsed = parse(std::move(arguments));
    if (const auto* error = std::get_if<OptionError>(&parsed))
        ADD_FAILURE() << "unexpected error: " << error->message;
    EXPECT_TRUE(std::holds_alternative<AnalyzeOptions>(parsed));
    return std::holds_alternative<AnalyzeOptions>(parsed) ? std::get<AnalyzeOptions>(parsed)
                                                          : AnalyzeOptions {};
}

std::string error(std::vector<std::string_view> arguments)
{
    const auto parsed = parse(std::move(arguments));
    const auto* failure = std::get_if<OptionError>(&parsed);
    EXPECT_NE(failure, nullptr);
    return failure ? failure->message : std::string();
}

} // namespace

TEST(AnalyzeOptionsTest, DefaultsAreAWeightingFastNoOffsetFirstChannelCsv)
{
    const auto parsed = options({"show.wav"});
    EXPECT_EQ(parsed.path, "show.wav");
    EXPECT_EQ(parsed.weighting, FrequencyWeighting::a);
    EXPECT_EQ(parsed.response, TimeWeighting::fast);
    EXPECT_EQ(parsed.calibrationOffset, 0.0);
    EXPECT_EQ(parsed.channel, 0);
    EXPECT_EQ(parsed.format, OutputFormat::csv);
    EXPECT_FALSE(parsed.summary);
    EXPECT_FALSE(parsed.spectrum);
}

TEST(AnalyzeOptionsTest, ReadsEachWeighting)
{
    EXPECT_EQ(options({"f.wav", "--weighting", "A"}).weighting, FrequencyWeighting::a);
    EXPECT_EQ(options({"f.wav", "--weighting", "C"}).weighting, FrequencyWeighting::c);
    EXPECT_EQ(options({"f.wav", "--weighting", "Z"}).weighting, FrequencyWeighting::z);
    EXPECT_EQ(options({"f.wav", "--weighting", "c"}).weighting, FrequencyWeighting::c);
}

TEST(AnalyzeOptionsTest, ReadsEachResponse)
{
    EXPECT_EQ(options({"f.wav", "--response", "slow"}).response, TimeWeighting::slow);
    EXPECT_EQ(options({"f.wav", "--response", "fast"}).response, TimeWeighting::fast);
    EXPECT_EQ(options({"f.wav", "--response", "Slow"}).response, TimeWeighting::slow);
}

TEST(AnalyzeOptionsTest, ReadsOffsetsWithSignsAndExponents)
{
    EXPECT_EQ(options({"f.wav", "--offset", "94.5"}).calibrationOffset, 94.5);
    EXPECT_EQ(options({"f.wav", "--offset", "-3.25"}).calibrationOffset, -3.25);
    EXPECT_EQ(options({"f.wav", "--offset", "+12"}).calibrationOffset, 12.0);
    EXPECT_EQ(options({"f.wav", "--offset", "1e2"}).calibrationOffset, 100.0);
}

TEST(AnalyzeOptionsTest, ReadsChannelFormatAndSummary)
{
    EXPECT_EQ(options({"f.wav", "--channel", "3"}).channel, 3);
    EXPECT_EQ(options({"f.wav", "--format", "jsonl"}).format, OutputFormat::jsonl);
    EXPECT_EQ(options({"f.wav", "--format", "csv"}).format, OutputFormat::csv);
    EXPECT_TRUE(options({"f.wav", "--summary"}).summary);
}

TEST(AnalyzeOptionsTest, SpectrumIsAFlagOfItsOwn)
{
    const auto parsed = options({"--spectrum", "f.wav"});
    EXPECT_TRUE(parsed.spectrum);
    EXPECT_FALSE(parsed.summary);
    EXPECT_FALSE(options({"f.wav", "--summary"}).spectrum);
    EXPECT_EQ(error({"f.wav", "--spectrum=yes"}), "option --spectrum takes no value");
}

TEST(AnalyzeOptionsTest, AcceptsValuesAfterAnEqualsSign)
{
    const auto parsed = options({"--weighting=C", "--offset=-2", "--channel=1", "f.wav"});
    EXPECT_EQ(parsed.weighting, FrequencyWeighting::c);
    EXPECT_EQ(parsed.calibrationOffset, -2.0);
    EXPECT_EQ(parsed.channel, 1);
    EXPECT_EQ(parsed.path, "f.wav");
}

TEST(AnalyzeOptionsTest, TakesOptionsInAnyOrderAroundTheFile)
{
    const auto parsed = options({"--summary", "--weighting", "Z", "f.flac", "--format", "jsonl"});
    EXPECT_EQ(parsed.path, "f.flac");
    EXPECT_EQ(parsed.weighting, FrequencyWeighting::z);
    EXPECT_EQ(parsed.format, OutputFormat::jsonl);
    EXPECT_TRUE(parsed.summary);
}

TEST(AnalyzeOptionsTest, LoneDashIsStandardInput)
{
    EXPECT_EQ(options({"-", "--weighting", "Z"}).path, "-");
}

TEST(AnalyzeOptionsTest, DoubleDashEndsOptions)
{
    EXPECT_EQ(options({"--", "--odd-name.wav"}).path, "--odd-name.wav");
}

TEST(AnalyzeOptionsTest, HelpWinsOverEverythingElse)
{
    EXPECT_TRUE(std::holds_alternative<HelpRequested>(parse({"--help"})));
    EXPECT_TRUE(std::holds_alternative<HelpRequested>(parse({"-h"})));
    EXPECT_TRUE(std::holds_alternative<HelpRequested>(parse({"f.wav", "--help"})));
}

TEST(AnalyzeOptionsTest, UsageNamesEveryOption)
{
    const std::string_view usage = usageText();
    for (std::string_view option : {"--weighting", "--response", "--offset", "--channel",
             "--format", "--summary", "--spectrum", "--help"})
        EXPECT_NE(usage.find(option), std::string_view::npos) << option;
}

TEST(AnalyzeOptionsTest, UnknownOptionIsAnError)
{
    EXPECT_EQ(error({"f.wav", "--loud"}), "unknown option \"--loud\"");
    EXPECT_EQ(error({"-x", "f.wav"}), "unknown option \"-x\"");
}

TEST(AnalyzeOptionsTest, MissingValueIsAnError)
{
    EXPECT_EQ(error({"f.wav", "--weighting"}), "option --weighting needs a value");
    EXPECT_EQ(error({"f.wav", "--offset"}), "option --offset needs a value");
}

TEST(AnalyzeOptionsTest, BadWeightingIsAnError)
{
    EXPECT_EQ(error({"f.wav", "--weighting", "B"}), "bad weighting \"B\" (use A, C or Z)");
    EXPECT_NE(error({"f.wav", "--weighting", ""}), "");
}

TEST(AnalyzeOptionsTest, BadResponseAndFormatAreErrors)
{
    EXPECT_EQ(
        error({"f.wav", "--response", "impulse"}), "bad response \"impulse\" (use fast or slow)");
    EXPECT_EQ(error({"f.wav", "--format", "xml"}), "bad format \"xml\" (use csv or jsonl)");
}

TEST(AnalyzeOptionsTest, BadNumbersAreErrors)
{
    for (std::string_view bad : {"abc", "", "12dB", "1,5", "inf", "nan", "++1", "+-1"})
        EXPECT_NE(error({"f.wav", "--offset", bad}).find("bad offset"), std::string::npos) << bad;
    for (std::string_view bad : {"-1", "one", "1.5", "", "99999999999"})
        EXPECT_NE(error({"f.wav", "--channel", bad}).find("bad channel"), std::string::npos) << bad;
}

TEST(AnalyzeOptionsTest, FileIsRequiredAndSingle)
{
    EXPECT_EQ(error({}), "no file given (see --help)");
    EXPECT_EQ(error({"--summary"}), "no file given (see --help)");
    EXPECT_EQ(error({"a.wav", "b.wav"}), "more than one file given: \"a.wav\" and \"b.wav\"");
}

TEST(AnalyzeOptionsTest, SummaryTakesNoValue)
{
    EXPECT_EQ(error({"f.wav", "--summary=yes"}), "option --summary takes no value");
}
