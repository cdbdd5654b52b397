#include <gtest/gtest.h>

#include "qlab/ByteText.h"
#include "qlab/OSCReader.h"

using namespace ostrel;
using ostrel::test::Bytes;
using ostrel::test::hex;

TEST(OSCReader, StringMovesTheCursorToTheNextWordAfterItsNul)
{
    const Bytes packet = hex("61626300 61626364 00000000");
    OSCReader reader(packet);
    EXPECT_EQ(reader.readString(), "abc");
    EXPECT_EQ(reader.index, 4);
    EXPECT_EQ(reader.readString(), "abcd");
    EXPECT_EQ(reader.index, 12);
    EXPECT_TRUE(reader.isAtEnd());
}

TEST(OSCReader, StringPaddingMayLeaveTheCursorPastTheEnd)
{
    const Bytes packet = hex("616200");
    OSCReader reader(packet);
    EXPECT_EQ(reader.readString(), "ab");
    EXPECT_EQ(reader.index, 4);
    EXPECT_TRUE(reader.isAtEnd());
    EXPECT_FALSE(reader.readString().has_value());
    EXPECT_FALSE(reader.read32().has_value());
    EXPECT_EQ(reader.index, 4);
}

TEST(OSCReader, StringWithoutNulFailsAndLeavesTheCursor)
{
    const Bytes packet = hex("61626364");
    OSCReader reader(packet);
    EXPECT_FALSE(reader.readString().has_value());
    EXPECT_EQ(reader.index, 0);
}

TEST(OSCReader, ShortReadsFailWithoutMovingTheCursor)
{
    const Bytes packet = hex("01020304 050607");
    OSCReader reader(packet);
    EXPECT_FALSE(reader.read64().has_value());
    EXPECT_EQ(reader.index, 0);
    EXPECT_EQ(reader.read32(), 0x01020304u);
    EXPECT_FALSE(reader.read32().has_value());
    EXPECT_EQ(reader.index, 4);
}

TEST(OSCReader, SixtyFourBitReadIsBigEndian)
{
    const Bytes packet = hex("01020304 05060708");
    OSCReader reader(packet);
    EXPECT_EQ(reader.read64(), 0x0102030405060708u);
    EXPECT_TRUE(reader.isAtEnd());
}

TEST(OSCReader, BlobSkipsItsPaddingAndFailsWhole)
{
    const Bytes packet = hex("00000002 abcd0000 00000009 01");
    OSCReader reader(packet);
    EXPECT_EQ(reader.readBlob(), (std::vector<std::uint8_t> {0xab, 0xcd}));
    EXPECT_EQ(reader.index, 8);
    EXPECT_FALSE(reader.readBlob().has_value());
    EXPECT_EQ(reader.index, 8);
}

TEST(OSCReader, EmptyPacketIsAtEnd)
{
    OSCReader reader(std::span<const std::uint8_t> {});
    EXPECT_TRUE(reader.isAtEnd());
    EXPECT_FALSE(reader.readString().has_value());
}
