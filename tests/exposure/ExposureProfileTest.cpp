#include <gtest/gtest.h>

#include "exposure/ExposureProfile.h"

using namespace ostrel;

TEST(ExposureProfile, TheBuiltInProfilesHaveTheirWindowsAndLimits)
{
    const auto who = ExposureProfile::builtIn(ExposureProfileKind::who);
    EXPECT_EQ(who.windowSeconds, 900.0);
    EXPECT_EQ(who.limit, 100.0);
    const auto swiss = ExposureProfile::builtIn(ExposureProfileKind::swiss);
    EXPECT_EQ(swiss.windowSeconds, 3600.0);
    EXPECT_EQ(swiss.limit, 100.0);
    EXPECT_EQ(swiss.bands, (std::vector<double> {93.0, 96.0}));
    const auto din = ExposureProfile::builtIn(ExposureProfileKind::din);
    EXPECT_EQ(din.windowSeconds, 1800.0);
    EXPECT_EQ(din.limit, 99.0);
    EXPECT_EQ(din.peakLimit, std::optional<double>(135.0));
    const auto uk = ExposureProfile::builtIn(ExposureProfileKind::uk);
    EXPECT_TRUE(uk.isDailyExposure);
    EXPECT_EQ(uk.limit, 85.0);
    EXPECT_EQ(uk.peakLimit, std::optional<double>(137.0));
}

TEST(ExposureProfile, NamesAndCustomWindowsAreParsed)
{
    EXPECT_EQ(ExposureProfile::parse("din"), ExposureProfile::builtIn(ExposureProfileKind::din));
    const auto custom = ExposureProfile::parse("custom:20:96.5");
    ASSERT_TRUE(custom);
    EXPECT_EQ(custom->kind, ExposureProfileKind::custom);
    EXPECT_EQ(custom->windowSeconds, 1200.0);
    EXPECT_EQ(custom->limit, 96.5);
}

TEST(ExposureProfile, AnythingElseIsRefused)
{
    for (const char* text : {"", "WHO", "custom", "custom:", "custom:0:100", "custom:61:100",
             "custom:15", "custom:15:loud", "custom:15:100:3", "custom:nan:100", "osha"})
        EXPECT_FALSE(ExposureProfile::parse(text)) << text;
}

TEST(ExposureProfile, ACustomWindowIsClampedToOneToSixtyMinutes)
{
    EXPECT_EQ(ExposureProfile::custom(0.5, 100.0).windowSeconds, 60.0);
    EXPECT_EQ(ExposureProfile::custom(90.0, 100.0).windowSeconds, 3600.0);
}
