#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "ostrel-analyze/ProgressLine.h"

using ostrel::analyze::ProgressLine;

TEST(AnalyzeProgressTest, SilentWhenNotATerminal)
{
    std::ostringstream out;
    {
        ProgressLine progress(out, false, 600.0);
        progress.update(300.0);
        progress.clear();
    }
    EXPECT_EQ(out.str(), "");
}

TEST(AnalyzeProgressTest, SilentForAShortFile)
{
    std::ostringstream out;
    ProgressLine progress(out, true, 59.0);
    progress.update(30.0);
    progress.clear();
    EXPECT_EQ(out.str(), "");
}

TEST(AnalyzeProgressTest, ShowsPercentOnOneLineAndClearsIt)
{
    std::ostringstream out;
    ProgressLine progress(out, true, 200.0);
    progress.update(2.0);
    progress.update(2.1); // same percent: nothing new
    progress.update(100.0);
    progress.clear();
    // Clearing blanks as many columns as the last line had.
    EXPECT_EQ(out.str(),
        "\rostrel-analyze: 1%\rostrel-analyze: 50%\r"
            + std::string(std::string("ostrel-analyze: 50%").size(), ' ') + "\r");
}

TEST(AnalyzeProgressTest, NeverClaimsDoneBeforeTheEnd)
{
    std::ostringstream out;
    ProgressLine progress(out, true, 100.0);
    progress.update(150.0);
    EXPECT_EQ(out.str(), "\rostrel-analyze: 99%");
}

TEST(AnalyzeProgressTest, UnknownLengthCountsSecondsAfterAMinute)
{
    std::ostringstream out;
    ProgressLine progress(out, true, std::nullopt);
    progress.update(30.0);
    EXPECT_EQ(out.str(), "");
    progress.update(61.5);
    EXPECT_EQ(out.str(), "\rostrel-analyze: 61 s analysed");
}

TEST(AnalyzeProgressTest, DestructionClearsTheLine)
{
    std::ostringstream out;
    {
        ProgressLine progress(out, true, 100.0);
        progress.update(5.0);
    }
    EXPECT_EQ(out.str(),
        "\rostrel-analyze: 5%\r" + std::string(std::string("ostrel-analyze: 5%").size(), ' ')
            + "\r");
}
