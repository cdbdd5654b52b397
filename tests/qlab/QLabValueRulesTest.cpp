#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>
#include <limits>

#include "qlab/QLabValueRules.h"

using namespace ostrel;

TEST(QLabValueRules, TextOfAStringNumberOrAnythingElse)
{
    EXPECT_EQ(QLabValueRules::text(QJsonValue("12a")), "12a");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(12)), "12");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(12.0)), "12");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(0.1)), "0.1");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(-7.5)), "-7.5");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(true)), "1");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(QJsonValue::Null)), "");
    EXPECT_EQ(QLabValueRules::text(QJsonValue()), "");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(QJsonArray {1})), "");
    EXPECT_EQ(QLabValueRules::text(QJsonValue(QJsonObject {})), "");
}

TEST(QLabValueRules, NumberFromANumberOrAStrictlyParsedString)
{
    EXPECT_EQ(QLabValueRules::number(QJsonValue(2.5)), 2.5);
    EXPECT_EQ(QLabValueRules::number(QJsonValue("2.5")), 2.5);
    EXPECT_EQ(QLabValueRules::number(QJsonValue("-1e3")), -1000.0);
    EXPECT_EQ(QLabValueRules::number(QJsonValue("+4")), 4.0);
    EXPECT_EQ(QLabValueRules::number(QJsonValue(false)), 0.0);
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue(" 2")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("2 ")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("2,5")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("+-2")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("++2")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue(QJsonValue::Null)).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue(QJsonArray {1})).has_value());
}

TEST(QLabValueRules, NumberThatIsNotFiniteIsAbsent)
{
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("inf")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("-infinity")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("nan")).has_value());
    EXPECT_FALSE(QLabValueRules::number(QJsonValue("1e400")).has_value());
    EXPECT_FALSE(
        QLabValueRules::number(QJsonValue(std::numeric_limits<double>::infinity())).has_value());
}

TEST(QLabValueRules, BooleanFromNumbersAndAFewWords)
{
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue("YES")), true);
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue("True")), true);
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue("1")), true);
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue("no")), false);
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue("on")), false);
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue(0.5)), true);
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue(0)), false);
    EXPECT_EQ(QLabValueRules::boolean(QJsonValue(true)), true);
    EXPECT_FALSE(QLabValueRules::boolean(QJsonValue(QJsonArray {})).has_value());
    EXPECT_FALSE(QLabValueRules::boolean(QJsonValue()).has_value());
}

TEST(QLabValueRules, TruncatedTowardsZeroWithinSixtyFourBits)
{
    EXPECT_EQ(QLabValueRules::truncated(2.9), 2);
    EXPECT_EQ(QLabValueRules::truncated(-2.9), -2);
    EXPECT_EQ(QLabValueRules::truncated(-9.223372036854775808e18),
        std::numeric_limits<std::int64_t>::min());
    EXPECT_FALSE(QLabValueRules::truncated(9.223372036854775808e18).has_value());
    EXPECT_FALSE(QLabValueRules::truncated(std::nan("")).has_value());
    EXPECT_FALSE(QLabValueRules::truncated(-INFINITY).has_value());
}
