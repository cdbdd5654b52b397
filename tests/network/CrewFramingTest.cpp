#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "network/CrewFraming.h"
#include "network/CrewSamples.h"
#include "sessions/RecordingFormat.h"
#include "support/SteadyInterval.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

QByteArray bytes(std::initializer_list<unsigned char> values)
{
    QByteArray result;
    for (unsigned char value : values)
        result.append(static_cast<char>(value));
    return result;
}

MeasurementInterval intervalWithSpectrum()
{
    MeasurementInterval interval = steadyInterval(84.25);
    interval.clipped = true;
    Spectrum& spectrum = interval.spectrum.emplace();
    for (std::size_t band = 0; band < spectrum.bandLevels.size(); ++band)
        spectrum.bandLevels[band] = 40.0 + static_cast<double>(band);
    spectrum.fineBandLevels.fill(-200.0);
    spectrum.dominantFrequency = 1000.0;
    return interval;
}

} // namespace

TEST(CrewFramingTest, AFramedHelloGivesItsBodyLengthAndDecodesBack)
{
    const CrewMessage hello = CrewMessages::Hello {"FOH", CrewRole::primary};
    const auto frame = CrewFraming::frame(hello);
    ASSERT_TRUE(frame);
    const auto length = CrewFraming::length(QByteArrayView(*frame).first(4));
    ASSERT_TRUE(length);
    EXPECT_EQ(*length, static_cast<std::uint32_t>(frame->size() - 4));
    const auto message = CrewFraming::decode(QByteArrayView(*frame).sliced(4));
    ASSERT_TRUE(std::holds_alternative<CrewMessage>(message));
    EXPECT_EQ(std::get<CrewMessage>(message), hello);
}

TEST(CrewFramingTest, TheHeaderIsBigEndian)
{
    EXPECT_EQ(CrewFraming::length(bytes({0x00, 0x01, 0x02, 0x03})), 0x010203u);
}

TEST(CrewFramingTest, AHeaderOfFourMebibytesIsAcceptedAndOneByteMoreIsRefused)
{
    EXPECT_EQ(CrewFraming::length(bytes({0x00, 0x40, 0x00, 0x00})), 4'194'304u);
    EXPECT_FALSE(CrewFraming::length(bytes({0x00, 0x40, 0x00, 0x01})));
    EXPECT_FALSE(CrewFraming::length(bytes({0xff, 0xff, 0xff, 0xff})));
}

TEST(CrewFramingTest, AZeroHeaderAnnouncesAnEmptyFrame)
{
    EXPECT_EQ(CrewFraming::length(bytes({0x00, 0x00, 0x00, 0x00})), 0u);
}

TEST(CrewFramingTest, AHeaderOfTheWrongSizeIsRefused)
{
    EXPECT_FALSE(CrewFraming::length(bytes({0x00, 0x00, 0x01})));
    EXPECT_FALSE(CrewFraming::length(bytes({0x00, 0x00, 0x00, 0x01, 0x00})));
    EXPECT_FALSE(CrewFraming::length(QByteArray()));
}

TEST(CrewFramingTest, InvalidJsonOrANonObjectFailsToDecode)
{
    EXPECT_TRUE(std::holds_alternative<CrewMessageJson::Failure>(CrewFraming::decode("{\"hel")));
    EXPECT_TRUE(std::holds_alternative<CrewMessageJson::Failure>(CrewFraming::decode("[1,2]")));
    EXPECT_TRUE(std::holds_alternative<CrewMessageJson::Failure>(CrewFraming::decode("")));
}

TEST(CrewFramingTest, AMessageWithANumberJsonCannotHoldFailsToFrame)
{
    MirrorState state = sampleState();
    state.statistics.energy = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(CrewFraming::frame(CrewMessages::State {state}));
    state.statistics.energy = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(CrewFraming::frame(CrewMessages::State {state}));
    EXPECT_TRUE(CrewFraming::frame(CrewMessages::State {sampleState()}));
}

TEST(CrewFramingTest, AnIntervalTravelsAsOneRecordingFrameWithZeroTimes)
{
    const MeasurementInterval interval = intervalWithSpectrum();
    const QByteArray encoded = CrewFraming::encode(interval);
    EXPECT_EQ(static_cast<std::size_t>(encoded.size()), RecordingFormat::frameSize);
    const auto frame = RecordingFormat::decode(encoded, 0, true);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->audioTime, 0.0);
    EXPECT_EQ(frame->wallTime, 0.0);
    const auto decoded = CrewFraming::decodeInterval(encoded);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->sampleCount, interval.sampleCount);
    EXPECT_DOUBLE_EQ(decoded->energy, interval.energy);
    EXPECT_EQ(decoded->clipped, true);
    ASSERT_TRUE(decoded->spectrum);
    EXPECT_NEAR(decoded->spectrum->bandLevels[10], 50.0, 0.005);
    EXPECT_EQ(decoded->spectrum->dominantFrequency, 1000.0);
}

TEST(CrewFramingTest, AnIntervalOneByteShortOrLongDecodesToNothing)
{
    const QByteArray encoded = CrewFraming::encode(intervalWithSpectrum());
    EXPECT_FALSE(CrewFraming::decodeInterval(QByteArrayView(encoded).chopped(1)));
    EXPECT_FALSE(CrewFraming::decodeInterval(encoded + '\0'));
    EXPECT_FALSE(CrewFraming::decodeInterval(QByteArray()));
}

TEST(CrewFramingTest, AnIntervalMessageFramedAndDecodedKeepsItsBytes)
{
    const QByteArray encoded = CrewFraming::encode(intervalWithSpectrum());
    const auto frame = CrewFraming::frame(CrewMessages::Interval {encoded});
    ASSERT_TRUE(frame);
    const auto message = CrewFraming::decode(QByteArrayView(*frame).sliced(4));
    ASSERT_TRUE(std::holds_alternative<CrewMessage>(message));
    const auto* interval = std::get_if<CrewMessages::Interval>(&std::get<CrewMessage>(message));
    ASSERT_TRUE(interval);
    EXPECT_EQ(interval->frame, encoded);
}
