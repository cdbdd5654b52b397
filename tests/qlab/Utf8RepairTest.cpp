#include <gtest/gtest.h>

#include "qlab/ByteText.h"
#include "qlab/Utf8Repair.h"

using namespace ostrel;
using ostrel::test::hex;

namespace {

const std::string mark = "\xEF\xBF\xBD";

} // namespace

TEST(Utf8Repair, ValidTextPassesUnchanged)
{
    const auto text = hex("41 c3a9 e299aa f09f8eb5");
    EXPECT_EQ(Utf8Repair::repaired(text), std::string(text.begin(), text.end()));
}

TEST(Utf8Repair, StrayContinuationByteBecomesOneMark)
{
    EXPECT_EQ(Utf8Repair::repaired(hex("41 80 42")), "A" + mark + "B");
}

TEST(Utf8Repair, TruncatedSequenceBecomesOneMark)
{
    EXPECT_EQ(Utf8Repair::repaired(hex("e299 41")), mark + "A");
    EXPECT_EQ(Utf8Repair::repaired(hex("f09f8e")), mark);
}

TEST(Utf8Repair, OverlongAndSurrogateFormsAreRejectedBytewise)
{
    EXPECT_EQ(Utf8Repair::repaired(hex("c0 af")), mark + mark);
    EXPECT_EQ(Utf8Repair::repaired(hex("e0 80 af")), mark + mark + mark);
    EXPECT_EQ(Utf8Repair::repaired(hex("ed a0 80")), mark + mark + mark);
}

TEST(Utf8Repair, NothingBeyondTheLastCodePoint)
{
    EXPECT_EQ(Utf8Repair::repaired(hex("f4 90 80 80")), mark + mark + mark + mark);
    EXPECT_EQ(Utf8Repair::repaired(hex("f48fbfbf")), "\xF4\x8F\xBF\xBF");
    EXPECT_EQ(Utf8Repair::repaired(hex("ff fe")), mark + mark);
}
