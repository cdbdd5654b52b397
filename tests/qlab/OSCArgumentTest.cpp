#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qlab/OSCArgument.h"

using namespace ostrel;

TEST(OSCArgument, StringValueOfAnIntIsItsDecimalText)
{
    EXPECT_EQ(OSCArgument::int32(42).stringValue(), "42");
    EXPECT_EQ(OSCArgument::int32(-2147483647 - 1).stringValue(), "-2147483648");
}

TEST(OSCArgument, StringValueOfAFloatIsTheShortestRoundTripText)
{
    EXPECT_EQ(OSCArgument::float32(1.5f).stringValue(), "1.5");
    EXPECT_EQ(OSCArgument::float32(0.1f).stringValue(), "0.1");
    EXPECT_EQ(OSCArgument::float32(12.0f).stringValue(), "12");
    EXPECT_EQ(OSCArgument::float32(1e20f).stringValue(), "1e+20");
}

TEST(OSCArgument, StringValueOfAStringIsTheString)
{
    EXPECT_EQ(OSCArgument::string("Cue 1").stringValue(), "Cue 1");
    EXPECT_EQ(OSCArgument::string("").stringValue(), "");
}

TEST(OSCArgument, BlobBoolAndNullHaveNoStringValue)
{
    EXPECT_FALSE(OSCArgument::blob({0x31}).stringValue().has_value());
    EXPECT_FALSE(OSCArgument::boolean(true).stringValue().has_value());
    EXPECT_FALSE(OSCArgument::null().stringValue().has_value());
}

TEST(OSCArgument, ComparesByCaseAndPayload)
{
    EXPECT_EQ(OSCArgument::int32(1), OSCArgument::int32(1));
    EXPECT_NE(OSCArgument::int32(1), OSCArgument::int32(2));
    EXPECT_NE(OSCArgument::int32(1), OSCArgument::boolean(true));
    EXPECT_NE(OSCArgument::int32(0), OSCArgument::float32(0.0f));
    EXPECT_NE(OSCArgument::string("1"), OSCArgument::int32(1));
    EXPECT_NE(OSCArgument::boolean(true), OSCArgument::boolean(false));
    EXPECT_EQ(OSCArgument::null(), OSCArgument::null());
    EXPECT_NE(OSCArgument::float32(std::nanf("")), OSCArgument::float32(std::nanf("")));
}

TEST(OSCArgument, TypeTagsFollowTheCase)
{
    EXPECT_EQ(OSCArgument::int32(0).typeTag(), 'i');
    EXPECT_EQ(OSCArgument::float32(0).typeTag(), 'f');
    EXPECT_EQ(OSCArgument::string("").typeTag(), 's');
    EXPECT_EQ(OSCArgument::blob({}).typeTag(), 'b');
    EXPECT_EQ(OSCArgument::boolean(true).typeTag(), 'T');
    EXPECT_EQ(OSCArgument::boolean(false).typeTag(), 'F');
    EXPECT_EQ(OSCArgument::null().typeTag(), 'N');
}

TEST(OSCArgument, KindFollowsTheMaker)
{
    EXPECT_EQ(OSCArgument::int32(0).kind(), OSCArgument::Kind::int32);
    EXPECT_EQ(OSCArgument::float32(0).kind(), OSCArgument::Kind::float32);
    EXPECT_EQ(OSCArgument::string("").kind(), OSCArgument::Kind::string);
    EXPECT_EQ(OSCArgument::blob({}).kind(), OSCArgument::Kind::blob);
    EXPECT_EQ(OSCArgument::boolean(false).kind(), OSCArgument::Kind::boolean);
    EXPECT_EQ(OSCArgument::null().kind(), OSCArgument::Kind::null);
}
