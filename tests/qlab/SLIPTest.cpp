#include <gtest/gtest.h>

#include "qlab/ByteText.h"
#include "qlab/SLIP.h"

using namespace ostrel;
using ostrel::test::hex;

TEST(SLIP, FrameIsThePayloadAndOneTrailingEnd)
{
    EXPECT_EQ(SLIP::encode(hex("2f676f00 2c000000")), hex("2f676f00 2c000000 c0"));
}

TEST(SLIP, EndAndEscInsideThePayloadAreEscaped)
{
    EXPECT_EQ(SLIP::encode(hex("c0 db 01 02")), hex("dbdc dbdd 01 02 c0"));
    EXPECT_EQ(SLIP::encode(hex("dbdc")), hex("dbdd dc c0"));
}

TEST(SLIP, EscapeCodesAloneAreNotEscaped)
{
    EXPECT_EQ(SLIP::encode(hex("dc dd")), hex("dc dd c0"));
}

TEST(SLIP, EmptyPayloadIsALoneEnd)
{
    EXPECT_EQ(SLIP::encode({}), hex("c0"));
}

TEST(SLIP, BlobWithFramingBytesMatchesTheWire)
{
    // "/b" with the blob c0 db 01 02, as liblo frames it on TCP.
    EXPECT_EQ(SLIP::encode(hex("2f620000 2c620000 00000004 c0db0102")),
        hex("2f620000 2c620000 00000004 dbdc dbdd 0102 c0"));
}
