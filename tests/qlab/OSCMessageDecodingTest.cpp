#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "qlab/ByteText.h"
#include "qlab/OSCMessage.h"

using namespace ostrel;
using ostrel::test::ascii;
using ostrel::test::Bytes;
using ostrel::test::hex;
using ostrel::test::joined;

namespace {

std::vector<OSCArgument> argumentsOf(const Bytes& packet)
{
    const auto message = OSCMessage::decoding(packet);
    if (!message) {
        ADD_FAILURE() << "the packet did not decode";
        return {};
    }
    return message->arguments;
}

} // namespace

TEST(OSCMessageDecoding, PacketEndingBehindTheAddressHasNoArguments)
{
    const auto message = OSCMessage::decoding(hex("2f676f00"));
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(message->address, "/go");
    EXPECT_TRUE(message->arguments.empty());
}

TEST(OSCMessageDecoding, UnpaddedAddressAtTheEndStillHasNoArguments)
{
    const auto message = OSCMessage::decoding(ascii(std::string_view("/abc\0", 5)));
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(message->address, "/abc");
    EXPECT_TRUE(message->arguments.empty());
}

TEST(OSCMessageDecoding, TagStringWithoutCommaDecodesToNothing)
{
    EXPECT_FALSE(OSCMessage::decoding(hex("2f610000 69000000 00000001")).has_value());
}

TEST(OSCMessageDecoding, EmptyTagStringDecodesToNothing)
{
    EXPECT_FALSE(OSCMessage::decoding(hex("2f610000 00000000")).has_value());
}

TEST(OSCMessageDecoding, UnknownTagDecodesToNothing)
{
    EXPECT_FALSE(OSCMessage::decoding(joined({ascii("/a"), hex("0000"), ascii(",x"), hex("0000")}))
                     .has_value());
}

TEST(OSCMessageDecoding, UnknownTagAfterGoodArgumentsLosesThemAll)
{
    EXPECT_FALSE(OSCMessage::decoding(hex("2f610000 2c697800 00000001")).has_value());
}

TEST(OSCMessageDecoding, AddressWithoutSlashDecodesToNothing)
{
    EXPECT_FALSE(OSCMessage::decoding(hex("61626300 2c000000")).has_value());
    EXPECT_FALSE(
        OSCMessage::decoding(joined({ascii("#bundle"), hex("00"), hex("0000000000000001")}))
            .has_value());
}

TEST(OSCMessageDecoding, AddressWithoutNulDecodesToNothing)
{
    EXPECT_FALSE(OSCMessage::decoding(ascii("/abc")).has_value());
    EXPECT_FALSE(OSCMessage::decoding(Bytes {}).has_value());
}

TEST(OSCMessageDecoding, BoolAndNullConsumeNoBytes)
{
    const auto arguments = argumentsOf(hex("2f780000 2c54464e 00000000"));
    EXPECT_EQ(arguments,
        (std::vector {
            OSCArgument::boolean(true), OSCArgument::boolean(false), OSCArgument::null()}));
}

TEST(OSCMessageDecoding, BoolAndNullDecodeEvenWithNothingBehindTheTags)
{
    // ",TFN" plus its NUL fills exactly two words: nothing at all follows.
    const auto arguments
        = argumentsOf(joined({ascii("/x"), hex("0000"), ascii(",TFN"), hex("00000000")}));
    EXPECT_EQ(arguments.size(), 3u);
}

TEST(OSCMessageDecoding, InfinitumDecodesAsNull)
{
    EXPECT_EQ(argumentsOf(hex("2f780000 2c490000")), std::vector {OSCArgument::null()});
}

TEST(OSCMessageDecoding, Int64KeepsItsLowThirtyTwoBits)
{
    EXPECT_EQ(argumentsOf(hex("2f680000 2c680000 00000001 00000002")),
        std::vector {OSCArgument::int32(2)});
    EXPECT_EQ(argumentsOf(hex("2f680000 2c680000 00000000 ffffffff")),
        std::vector {OSCArgument::int32(-1)});
}

TEST(OSCMessageDecoding, TimeTagKeepsItsLowThirtyTwoBits)
{
    EXPECT_EQ(argumentsOf(hex("2f740000 2c740000 00000001 80000000")),
        std::vector {OSCArgument::int32(std::numeric_limits<std::int32_t>::min())});
}

TEST(OSCMessageDecoding, DoubleIsNarrowedToFloat)
{
    EXPECT_EQ(argumentsOf(hex("2f640000 2c640000 3ff80000 00000000")),
        std::vector {OSCArgument::float32(1.5f)});
}

TEST(OSCMessageDecoding, DoubleBeyondFloatRangeBecomesInfinite)
{
    // 1e300 and -1e300
    EXPECT_EQ(argumentsOf(hex("2f640000 2c640000 7e37e43c 8800759c")),
        std::vector {OSCArgument::float32(std::numeric_limits<float>::infinity())});
    EXPECT_EQ(argumentsOf(hex("2f640000 2c640000 fe37e43c 8800759c")),
        std::vector {OSCArgument::float32(-std::numeric_limits<float>::infinity())});
}

TEST(OSCMessageDecoding, DoubleJustPastTheLargestFloatRoundsToIt)
{
    // 2^128 - 2^104 + 2^102 lies below the halfway point to infinity; 2^128 - 2^103 is on it.
    EXPECT_EQ(argumentsOf(hex("2f640000 2c640000 47efffff e8000000")),
        std::vector {OSCArgument::float32(std::numeric_limits<float>::max())});
    EXPECT_EQ(argumentsOf(hex("2f640000 2c640000 47efffff f0000000")),
        std::vector {OSCArgument::float32(std::numeric_limits<float>::infinity())});
}

TEST(OSCMessageDecoding, SymbolDecodesAsString)
{
    EXPECT_EQ(
        argumentsOf(hex("2f730000 2c530000 61626300")), std::vector {OSCArgument::string("abc")});
}

TEST(OSCMessageDecoding, EveryWrittenKindReadsBack)
{
    const OSCMessage message("/workspace/ABC-1/cue_id/9/valuesForKeys",
        {OSCArgument::int32(-7), OSCArgument::float32(3.25f), OSCArgument::string("[\"name\"]"),
            OSCArgument::blob({0, 0xc0, 0xdb}), OSCArgument::boolean(true),
            OSCArgument::boolean(false), OSCArgument::null(), OSCArgument::string("")});
    EXPECT_EQ(OSCMessage::decoding(message.encoded()), message);
}

TEST(OSCMessageDecoding, FloatNaNKeepsItsBitPattern)
{
    const auto arguments = argumentsOf(hex("2f660000 2c660000 7fc00001"));
    ASSERT_EQ(arguments.size(), 1u);
    ASSERT_EQ(arguments[0].kind(), OSCArgument::Kind::float32);
    EXPECT_TRUE(std::isnan(std::get<float>(arguments[0].value())));
    EXPECT_EQ(OSCMessage("/f", arguments).encoded(), hex("2f660000 2c660000 7fc00001"));
}

TEST(OSCMessageDecoding, ReadPastTheEndDecodesToNothing)
{
    EXPECT_FALSE(OSCMessage::decoding(hex("2f690000 2c690000 000000")).has_value());
    EXPECT_FALSE(OSCMessage::decoding(hex("2f680000 2c680000 00000000 000000")).has_value());
    EXPECT_FALSE(OSCMessage::decoding(hex("2f730000 2c730000 616263")).has_value());
}

TEST(OSCMessageDecoding, BlobLongerThanThePacketDecodesToNothing)
{
    EXPECT_FALSE(OSCMessage::decoding(hex("2f620000 2c620000 00000005 01020304")).has_value());
    EXPECT_FALSE(OSCMessage::decoding(hex("2f620000 2c620000 ffffffff 01020304")).has_value());
    EXPECT_FALSE(OSCMessage::decoding(hex("2f620000 2c620000 0000")).has_value());
}

TEST(OSCMessageDecoding, BlobPaddingIsNotCheckedAgainstTheEnd)
{
    EXPECT_EQ(
        argumentsOf(hex("2f620000 2c620000 00000001 07")), std::vector {OSCArgument::blob({7})});
}

TEST(OSCMessageDecoding, BytesBehindTheLastArgumentAreIgnored)
{
    EXPECT_EQ(argumentsOf(hex("2f690000 2c690000 00000001 deadbeef")),
        std::vector {OSCArgument::int32(1)});
}

TEST(OSCMessageDecoding, BrokenUtf8IsRepairedNotRejected)
{
    const auto message = OSCMessage::decoding(hex("2f730000 2c730000 61ff6200"));
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(message->arguments,
        std::vector {OSCArgument::string("a\xEF\xBF\xBD"
                                         "b")});
}
