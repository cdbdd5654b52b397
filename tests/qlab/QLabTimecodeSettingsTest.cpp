#include <gtest/gtest.h>

#include <cstdint>

#include "qlab/QLabTimecodeSettings.h"

using namespace ostrel;

namespace {

QLabTimecodeSettings settings(std::optional<std::int64_t> outputType)
{
    return {Timecode(1, 0, 0, 0, TimecodeRate::fps25), outputType};
}

} // namespace

TEST(QLabTimecodeSettings, OutputTypeZeroIsMidiTimecode)
{
    EXPECT_EQ(settings(0).outputTitle(), "MTC");
}

TEST(QLabTimecodeSettings, OutputTypeOneIsLinearTimecode)
{
    EXPECT_EQ(settings(1).outputTitle(), "LTC");
}

TEST(QLabTimecodeSettings, UnknownOrMissingOutputTypeHasNoTitle)
{
    EXPECT_FALSE(settings(std::nullopt).outputTitle());
    EXPECT_FALSE(settings(2).outputTitle());
    EXPECT_FALSE(settings(-1).outputTitle());
}

TEST(QLabTimecodeSettings, EqualityComparesStartAndOutputType)
{
    EXPECT_EQ(settings(0), settings(0));
    EXPECT_NE(settings(0), settings(1));
    EXPECT_NE(settings(0), settings(std::nullopt));
    EXPECT_NE(settings(0), (QLabTimecodeSettings {Timecode(1, 0, 0, 1, TimecodeRate::fps25), 0}));
}
