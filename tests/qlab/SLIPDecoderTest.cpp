#include <gtest/gtest.h>

#include "qlab/ByteText.h"
#include "qlab/OSCMessage.h"
#include "qlab/SLIP.h"
#include "qlab/SLIPDecoder.h"

using namespace ostrel;
using ostrel::test::ascii;
using ostrel::test::Bytes;
using ostrel::test::hex;

using Packets = std::vector<Bytes>;

TEST(SLIPDecoder, DoubledEndYieldsNoPacket)
{
    SLIPDecoder decoder;
    EXPECT_TRUE(decoder.feed(hex("c0 c0")).empty());
    EXPECT_TRUE(decoder.buffer.empty());
}

TEST(SLIPDecoder, EscapeSplitAcrossChunksSurvivesUntilEnd)
{
    SLIPDecoder decoder;
    EXPECT_TRUE(decoder.feed(hex("61 db")).empty());
    EXPECT_TRUE(decoder.isEscaping);
    EXPECT_TRUE(decoder.feed(hex("dc 62")).empty());
    EXPECT_EQ(decoder.buffer, hex("61 c0 62"));
    EXPECT_EQ(decoder.feed(hex("c0")), Packets {hex("61 c0 62")});
}

TEST(SLIPDecoder, EscEscBecomesEsc)
{
    SLIPDecoder decoder;
    EXPECT_EQ(decoder.feed(hex("01 db dd 02 c0")), Packets {hex("01 db 02")});
}

TEST(SLIPDecoder, StrayEscIsSwallowedAndTheByteKept)
{
    SLIPDecoder decoder;
    decoder.feed(hex("db 41"));
    EXPECT_EQ(decoder.buffer, hex("41"));
    EXPECT_FALSE(decoder.isEscaping);
}

TEST(SLIPDecoder, EscapedEndDoesNotCloseTheFrame)
{
    SLIPDecoder decoder;
    EXPECT_TRUE(decoder.feed(hex("db c0")).empty());
    EXPECT_EQ(decoder.buffer, hex("c0"));
}

TEST(SLIPDecoder, SeveralFramesInOneChunkComeInStreamOrder)
{
    SLIPDecoder decoder;
    EXPECT_EQ(decoder.feed(hex("c0 01 c0 02 03 c0 c0 04")), (Packets {hex("01"), hex("02 03")}));
    EXPECT_EQ(decoder.buffer, hex("04"));
}

TEST(SLIPDecoder, FrameFedByteByByteArrivesOnce)
{
    const Bytes payload = hex("2f616200 2c620000 00000003 c0dbdd00");
    const Bytes frame = SLIP::encode(payload);
    SLIPDecoder decoder;
    Packets packets;
    for (const std::uint8_t byte : frame) {
        for (auto& packet : decoder.feed(std::span(&byte, 1)))
            packets.push_back(std::move(packet));
    }
    EXPECT_EQ(packets, Packets {payload});
}

TEST(SLIPDecoder, EncodedFramesDecodeToTheirPayloads)
{
    const Packets payloads {ascii("/workspaces"), hex("c0"), hex("db"), hex("dbdc c0c0 dd")};
    Bytes stream;
    for (const auto& payload : payloads) {
        const auto frame = SLIP::encode(payload);
        stream.insert(stream.end(), frame.begin(), frame.end());
    }
    SLIPDecoder decoder;
    EXPECT_EQ(decoder.feed(stream), payloads);
}

TEST(SLIPDecoder, ResetForgetsAHalfFrameAndAPendingEscape)
{
    SLIPDecoder decoder;
    decoder.feed(hex("01 02 db"));
    decoder.reset();
    EXPECT_TRUE(decoder.buffer.empty());
    EXPECT_FALSE(decoder.isEscaping);
    EXPECT_EQ(decoder.feed(hex("dc c0")), Packets {hex("dc")});
}

TEST(SLIPDecoder, ChunkLeavingOneByteOverTheLimitDropsTheFrame)
{
    SLIPDecoder decoder;
    EXPECT_EQ(decoder.maximumPacketSize, 4'194'304);
    const Bytes chunk(4'194'305, 0x41);
    EXPECT_TRUE(decoder.feed(chunk).empty());
    EXPECT_TRUE(decoder.buffer.empty());
    EXPECT_FALSE(decoder.isEscaping);
}

TEST(SLIPDecoder, ChunkLeavingExactlyTheLimitKeepsTheFrame)
{
    SLIPDecoder decoder;
    const Bytes chunk(4'194'304, 0x41);
    EXPECT_TRUE(decoder.feed(chunk).empty());
    EXPECT_EQ(decoder.buffer.size(), 4'194'304u);
    const auto packets = decoder.feed(hex("c0"));
    ASSERT_EQ(packets.size(), 1u);
    EXPECT_EQ(packets[0].size(), 4'194'304u);
}

TEST(SLIPDecoder, FrameFinishedInsideTheChunkIsDeliveredHoweverLong)
{
    SLIPDecoder decoder;
    decoder.maximumPacketSize = 4;
    const auto packets = decoder.feed(hex("01020304050607 c0 0809"));
    EXPECT_EQ(packets, Packets {hex("01020304050607")});
    EXPECT_EQ(decoder.buffer, hex("0809"));
}

TEST(SLIPDecoder, OverlongFrameMayGrowByOneChunkBeforeItIsDropped)
{
    SLIPDecoder decoder;
    decoder.maximumPacketSize = 4;
    decoder.feed(hex("010203"));
    EXPECT_EQ(decoder.buffer.size(), 3u);
    decoder.feed(hex("04"));
    EXPECT_EQ(decoder.buffer.size(), 4u);
    decoder.feed(hex("05 db"));
    EXPECT_TRUE(decoder.buffer.empty());
    EXPECT_FALSE(decoder.isEscaping);
}

TEST(SLIPDecoder, RestOfADroppedFrameArrivesAsAFrameThatIsNotOSC)
{
    SLIPDecoder decoder;
    decoder.maximumPacketSize = 8;
    decoder.feed(ascii("/long/address/"));
    EXPECT_TRUE(decoder.buffer.empty());
    const auto packets = decoder.feed(hex("6100 c0"));
    ASSERT_EQ(packets, Packets {hex("6100")});
    EXPECT_FALSE(OSCMessage::decoding(packets[0]).has_value());
}

TEST(SLIPDecoder, DecoderKeepsItsCapacityBetweenFrames)
{
    SLIPDecoder decoder;
    decoder.feed(Bytes(1000, 0x41));
    decoder.feed(hex("c0"));
    EXPECT_GE(decoder.buffer.capacity(), 1000u);
}
