#include <gtest/gtest.h>

#include <limits>

#include "qlab/ByteText.h"
#include "qlab/OSCMessage.h"

using namespace ostrel;
using ostrel::test::ascii;
using ostrel::test::hex;
using ostrel::test::joined;

TEST(OSCMessageEncoding, WorkspacesWithoutArgumentsIsSixteenBytesWithAnEmptyTagString)
{
    const auto packet = OSCMessage("/workspaces").encoded();
    EXPECT_EQ(packet.size(), 16u);
    EXPECT_EQ(packet, joined({ascii("/workspaces"), hex("00"), ascii(","), hex("000000")}));
}

TEST(OSCMessageEncoding, AddressOfAWholeNumberOfWordsGetsFourNulBytes)
{
    EXPECT_EQ(OSCMessage("/abc").encoded(), hex("2f616263 00000000 2c000000"));
    EXPECT_EQ(OSCMessage("/go").encoded(), hex("2f676f00 2c000000"));
}

TEST(OSCMessageEncoding, UpdatesWithIntOne)
{
    EXPECT_EQ(OSCMessage("/updates", {OSCArgument::int32(1)}).encoded(),
        joined({ascii("/updates"), hex("00000000"), ascii(",i"), hex("0000"), hex("00000001")}));
}

TEST(OSCMessageEncoding, IntIsBigEndianTwosComplement)
{
    EXPECT_EQ(
        OSCMessage("/i", {OSCArgument::int32(-2)}).encoded(), hex("2f690000 2c690000 fffffffe"));
    EXPECT_EQ(
        OSCMessage("/i", {OSCArgument::int32(std::numeric_limits<std::int32_t>::min())}).encoded(),
        hex("2f690000 2c690000 80000000"));
    EXPECT_EQ(OSCMessage("/i", {OSCArgument::int32(0x01020304)}).encoded(),
        hex("2f690000 2c690000 01020304"));
}

TEST(OSCMessageEncoding, FloatIsItsBitPatternBigEndian)
{
    EXPECT_EQ(OSCMessage("/f", {OSCArgument::float32(1.5f)}).encoded(),
        hex("2f660000 2c660000 3fc00000"));
    EXPECT_EQ(OSCMessage("/f", {OSCArgument::float32(-0.0f)}).encoded(),
        hex("2f660000 2c660000 80000000"));
    EXPECT_EQ(
        OSCMessage("/f", {OSCArgument::float32(std::numeric_limits<float>::infinity())}).encoded(),
        hex("2f660000 2c660000 7f800000"));
}

TEST(OSCMessageEncoding, StringIsPaddedOnThePacketLength)
{
    EXPECT_EQ(OSCMessage("/s", {OSCArgument::string("abc")}).encoded(),
        hex("2f730000 2c730000 61626300"));
    EXPECT_EQ(OSCMessage("/s", {OSCArgument::string("abcd")}).encoded(),
        hex("2f730000 2c730000 61626364 00000000"));
    EXPECT_EQ(
        OSCMessage("/s", {OSCArgument::string("")}).encoded(), hex("2f730000 2c730000 00000000"));
}

TEST(OSCMessageEncoding, StringKeepsItsUtf8Bytes)
{
    EXPECT_EQ(OSCMessage("/s", {OSCArgument::string("\xC3\xA9")}).encoded(),
        hex("2f730000 2c730000 c3a90000"));
}

TEST(OSCMessageEncoding, BlobOfFiveBytesGetsThreeBytesOfPadding)
{
    EXPECT_EQ(OSCMessage("/a", {OSCArgument::blob({1, 2, 3, 4, 5})}).encoded(),
        hex("2f610000 2c620000 00000005 01020304 05000000"));
}

TEST(OSCMessageEncoding, BlobOfFourBytesGetsNoPadding)
{
    EXPECT_EQ(OSCMessage("/a", {OSCArgument::blob({1, 2, 3, 4})}).encoded(),
        hex("2f610000 2c620000 00000004 01020304"));
}

TEST(OSCMessageEncoding, EmptyBlobIsItsLengthAlone)
{
    EXPECT_EQ(
        OSCMessage("/a", {OSCArgument::blob({})}).encoded(), hex("2f610000 2c620000 00000000"));
}

TEST(OSCMessageEncoding, BoolAndNullWriteTagsOnly)
{
    EXPECT_EQ(OSCMessage("/x",
                  {OSCArgument::boolean(true), OSCArgument::boolean(false), OSCArgument::null()})
                  .encoded(),
        hex("2f780000 2c54464e 00000000"));
}

TEST(OSCMessageEncoding, MixedArgumentsFollowTheTagsInOrder)
{
    const OSCMessage message("/mix",
        {OSCArgument::int32(-1), OSCArgument::float32(0.25f), OSCArgument::string("hi"),
            OSCArgument::blob({0xff})});
    EXPECT_EQ(message.encoded(),
        hex("2f6d6978 00000000 2c696673 62000000 ffffffff 3e800000 68690000 00000001"
            "ff000000"));
}
