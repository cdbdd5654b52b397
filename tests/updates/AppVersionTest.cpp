#include <gtest/gtest.h>

#include "updates/AppVersion.h"

using ostrel::AppVersion::compare;

TEST(AppVersion, NumbersCompareAsNumbersNotAsText)
{
    EXPECT_GT(compare("1.10", "1.9"), 0);
    EXPECT_LT(compare("1.9", "1.10"), 0);
    EXPECT_GT(compare("2.0", "1.99.99"), 0);
}

TEST(AppVersion, TheSameVersionIsEqualWhateverItsLeadingZerosAndSpaces)
{
    EXPECT_EQ(compare("1.2.3", "1.2.3"), 0);
    EXPECT_EQ(compare("1.02", "1.2"), 0);
    EXPECT_EQ(compare(" 1.2 ", "1.2"), 0);
}

TEST(AppVersion, AnotherNumberAfterTheCommonPartIsNewer)
{
    EXPECT_GT(compare("1.0.1", "1.0"), 0);
    EXPECT_LT(compare("1.0", "1.0.1"), 0);
}

TEST(AppVersion, LettersAfterTheCommonPartMarkAPreRelease)
{
    EXPECT_LT(compare("1.0b2", "1.0"), 0);
    EXPECT_GT(compare("1.0", "1.0b2"), 0);
    EXPECT_LT(compare("1.0a1", "1.0b1"), 0);
    EXPECT_LT(compare("1.0b2", "1.0b10"), 0);
}

TEST(AppVersion, ANumberOutranksLettersInTheSamePlace)
{
    EXPECT_GT(compare("1.1", "1.a"), 0);
    EXPECT_LT(compare("1.a", "1.1"), 0);
}

TEST(AppVersion, BuildNumbersLongerThanAnyIntegerStillCompare)
{
    EXPECT_GT(compare("1.123456789012345678901234567890", "1.123456789012345678901234567889"), 0);
}

TEST(AppVersion, AnEmptyVersionIsOlderThanAnyOther)
{
    EXPECT_LT(compare("", "0.1"), 0);
    EXPECT_EQ(compare("", ""), 0);
}
