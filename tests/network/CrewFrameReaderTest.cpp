#include <gtest/gtest.h>

#include "network/CrewFrameReader.h"
#include "network/CrewFraming.h"

using namespace ostrel;

namespace {

QByteArray framed(const QString& station)
{
    return *CrewFraming::frame(CrewMessages::Hello {station, CrewRole::secondary});
}

// Feeds the stream in pieces of at most `chunk` bytes, as a socket would, and gathers bodies.
std::vector<QByteArray> read(CrewFrameReader& reader, QByteArrayView stream, qsizetype chunk)
{
    std::vector<QByteArray> bodies;
    while (!stream.isEmpty() && !reader.isBroken()) {
        const qsizetype size = std::min({chunk, reader.wanted(), stream.size()});
        if (reader.append(stream.first(size)) == CrewFrameReader::Outcome::bodyComplete)
            bodies.push_back(reader.takeBody());
        stream = stream.sliced(size);
    }
    return bodies;
}

} // namespace

TEST(CrewFrameReaderTest, TwoFramesInOneChunkAreReadOneAfterTheOther)
{
    CrewFrameReader reader;
    const auto bodies = read(reader, framed("A") + framed("B"), 1 << 20);
    ASSERT_EQ(bodies.size(), 2u);
    EXPECT_EQ(bodies[0], framed("A").sliced(4));
    EXPECT_EQ(bodies[1], framed("B").sliced(4));
}

TEST(CrewFrameReaderTest, AFrameSplitIntoSingleBytesIsReadWhole)
{
    CrewFrameReader reader;
    const auto bodies = read(reader, framed("Backstage"), 1);
    ASSERT_EQ(bodies.size(), 1u);
    EXPECT_EQ(bodies[0], framed("Backstage").sliced(4));
}

TEST(CrewFrameReaderTest, AZeroLengthFrameGivesNothingAndLeavesTheNextFrameWhole)
{
    CrewFrameReader reader;
    const QByteArray stream = QByteArray(4, '\0') + framed("A") + QByteArray(4, '\0');
    const auto bodies = read(reader, stream, 3);
    ASSERT_EQ(bodies.size(), 1u);
    EXPECT_EQ(bodies[0], framed("A").sliced(4));
    EXPECT_FALSE(reader.isBroken());
    EXPECT_EQ(reader.wanted(), 4);
}

TEST(CrewFrameReaderTest, AHeaderOverTheLimitBreaksTheStream)
{
    CrewFrameReader reader;
    const QByteArray header("\x00\x40\x00\x01", 4);
    EXPECT_EQ(reader.append(header), CrewFrameReader::Outcome::broken);
    EXPECT_TRUE(reader.isBroken());
    EXPECT_EQ(reader.wanted(), 0);
    EXPECT_EQ(reader.append("x"), CrewFrameReader::Outcome::broken);
}

TEST(CrewFrameReaderTest, MoreBytesThanWantedBreakTheStream)
{
    CrewFrameReader reader;
    EXPECT_EQ(reader.append("12345"), CrewFrameReader::Outcome::broken);
}

TEST(CrewFrameReaderTest, ABodyNeverReservesMoreThanItsAnnouncedLength)
{
    CrewFrameReader reader;
    reader.append(QByteArray("\x00\x40\x00\x00", 4));
    EXPECT_EQ(reader.announcedLength(), 4'194'304u);
    EXPECT_EQ(reader.wanted(), 4'194'304);
    // A peer that dribbles: the room grows with what came, not with what was announced.
    reader.append("{");
    EXPECT_LE(reader.reservedBytes(), 64);
    const QByteArray block(65'536, ' ');
    for (int index = 0; index < 63; ++index)
        reader.append(block);
    EXPECT_LE(reader.reservedBytes(), 4'194'304 + 8);
    EXPECT_GE(reader.bufferedBytes(), 63 * 65'536);
    while (reader.wanted() > 0)
        reader.append(QByteArray(std::min<qsizetype>(reader.wanted(), 65'536), ' '));
    EXPECT_LE(reader.reservedBytes(), 4'194'304 + 8);
    EXPECT_EQ(reader.takeBody().size(), 4'194'304);
    EXPECT_EQ(reader.bufferedBytes(), 0);
}
