#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include <QtEndian>

#include "sessions/RecordingFormat.h"

using namespace ostrel;
namespace Format = ostrel::RecordingFormat;

namespace {

double float64At(const QByteArray& bytes, std::size_t offset)
{
    return std::bit_cast<double>(qFromLittleEndian<quint64>(bytes.constData() + offset));
}

float float32At(const QByteArray& bytes, std::size_t offset)
{
    return std::bit_cast<float>(qFromLittleEndian<quint32>(bytes.constData() + offset));
}

quint32 uint32At(const QByteArray& bytes, std::size_t offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

qint16 int16At(const QByteArray& bytes, std::size_t offset)
{
    return qFromLittleEndian<qint16>(bytes.constData() + offset);
}

bool allZero(const QByteArray& bytes, std::size_t from, std::size_t to)
{
    for (std::size_t i = from; i < to; ++i)
        if (bytes[static_cast<qsizetype>(i)] != 0) return false;
    return true;
}

// Values a 32-bit float holds exactly, so that they come back equal.
MeasurementInterval fullInterval()
{
    MeasurementInterval interval;
    interval.sampleCount = 4800;
    interval.sampleRate = 48000.0;
    interval.energy = 1.234567890123e9;
    interval.peakPower = 3.25e8;
    interval.maxLevel = 96.5;
    interval.level = 94.25;
    interval.rawEnergy = 0.0123456789;
    interval.clipped = true;
    Spectrum spectrum;
    for (std::size_t i = 0; i < spectrum.bandLevels.size(); ++i)
        spectrum.bandLevels[i] = 40.0 + static_cast<double>(i) * 1.25;
    for (std::size_t i = 0; i < spectrum.fineBandLevels.size(); ++i)
        spectrum.fineBandLevels[i] = -200.0 + static_cast<double>(i) * 0.75;
    spectrum.dominantFrequency = 1000.5;
    spectrum.peak = SpectralPeak {2500.25, 88.5, 31.75, -42.5};
    interval.spectrum = spectrum;
    return interval;
}

QByteArray encodedFrame(
    const MeasurementInterval& interval, double audioTime = 1.5, double wallTime = 1.625)
{
    return Format::encode(RecordedFrame {audioTime, wallTime, interval});
}

} // namespace

TEST(RecordingFormat, ConstantsDescribeTheFile)
{
    EXPECT_EQ(std::string(Format::magic.begin(), Format::magic.end()), "OSTLFRM1");
    EXPECT_EQ(Format::version, 1u);
    EXPECT_EQ(Format::bandCount, 31);
    EXPECT_EQ(Format::fineCount, 240);
    EXPECT_EQ(Format::headerSize, 32u);
    EXPECT_EQ(Format::frameSize, 624u);
    EXPECT_STREQ(Format::framesFileName, "measurements.ostrel");
    EXPECT_STREQ(Format::audioFileName, "audio.aac");
}

TEST(RecordingFormat, FrameSizeIsAMultipleOfEightAndTheHeaderStatesIt)
{
    EXPECT_EQ(Format::frameSize % 8, 0u);
    EXPECT_GE(Format::frameSize, Format::Offset::end);
    EXPECT_LT(Format::frameSize - Format::Offset::end, 8u);
    EXPECT_EQ(uint32At(Format::header(), 12), Format::frameSize);
}

TEST(RecordingFormat, HeaderLayoutIsMagicVersionSizesAndZeros)
{
    const QByteArray header = Format::header();
    ASSERT_EQ(header.size(), 32);
    EXPECT_EQ(header.left(8), QByteArray("OSTLFRM1"));
    EXPECT_EQ(uint32At(header, 8), 1u);
    EXPECT_EQ(uint32At(header, 12), 624u);
    EXPECT_EQ(qFromLittleEndian<quint16>(header.constData() + 16), 31);
    EXPECT_EQ(qFromLittleEndian<quint16>(header.constData() + 18), 240);
    EXPECT_TRUE(allZero(header, 20, 32));
    // Little-endian whatever the machine: 624 is 0x0270.
    EXPECT_EQ(header[12], char(0x70));
    EXPECT_EQ(header[13], char(0x02));
}

TEST(RecordingFormat, HeaderIsValidOnlyForThisProgramsLayout)
{
    EXPECT_TRUE(Format::isValidHeader(Format::header()));
    EXPECT_TRUE(Format::isValidHeader(Format::header() + QByteArray(624, '\0')));
    EXPECT_FALSE(Format::isValidHeader(Format::header().left(31)));
    EXPECT_FALSE(Format::isValidHeader(QByteArray()));

    const auto changed = [](std::size_t offset, char value) {
        QByteArray header = Format::header();
        header[static_cast<qsizetype>(offset)] = value;
        return header;
    };
    EXPECT_FALSE(Format::isValidHeader(changed(7, '2'))); // magic
    EXPECT_FALSE(Format::isValidHeader(changed(8, 2))); // version
    EXPECT_FALSE(Format::isValidHeader(changed(12, 0x78))); // frame size 632
    EXPECT_FALSE(Format::isValidHeader(changed(16, 30))); // band count
    EXPECT_FALSE(Format::isValidHeader(changed(18, 120))); // fine count
}

// Breaks when a field is added to an interval, a spectrum or a peak, so that the frame layout
// is extended with it rather than silently dropping it.
TEST(RecordingFormat, EveryFieldOfAnIntervalSurvivesAFrame)
{
    const MeasurementInterval interval = fullInterval();
    const auto& [sampleCount, sampleRate, energy, peakPower, maxLevel, level, rawEnergy, clipped,
        spectrum, exposureEnergy, exposurePeakPower]
        = interval;
    const auto& [bandLevels, dominantFrequency, peak, fineBandLevels] = *spectrum;
    const auto& [frequency, peakLevel, prominence, harmonicLevel] = *peak;

    const auto frame = Format::decode(encodedFrame(interval, 12.5, 12.75), 0, true);

    ASSERT_TRUE(frame.has_value());
    const auto& [audioTime, wallTime, decoded] = *frame;
    EXPECT_EQ(audioTime, 12.5);
    EXPECT_EQ(wallTime, 12.75);
    EXPECT_EQ(decoded.sampleCount, sampleCount);
    EXPECT_EQ(decoded.sampleRate, sampleRate);
    EXPECT_EQ(decoded.energy, energy);
    EXPECT_EQ(decoded.peakPower, peakPower);
    EXPECT_EQ(decoded.maxLevel, maxLevel);
    EXPECT_EQ(decoded.level, level);
    EXPECT_EQ(decoded.rawEnergy, rawEnergy);
    EXPECT_EQ(decoded.clipped, clipped);
    ASSERT_TRUE(decoded.spectrum.has_value());
    EXPECT_EQ(decoded.spectrum->bandLevels, bandLevels);
    EXPECT_EQ(decoded.spectrum->fineBandLevels, fineBandLevels);
    EXPECT_EQ(decoded.spectrum->dominantFrequency, dominantFrequency);
    ASSERT_TRUE(decoded.spectrum->peak.has_value());
    EXPECT_EQ(decoded.spectrum->peak->frequency, frequency);
    EXPECT_EQ(decoded.spectrum->peak->level, peakLevel);
    EXPECT_EQ(decoded.spectrum->peak->prominence, prominence);
    EXPECT_EQ(decoded.spectrum->peak->harmonicLevel, harmonicLevel);
    EXPECT_EQ(decoded, interval);
}

TEST(RecordingFormat, FieldsLieAtTheirOffsetsInLittleEndian)
{
    const MeasurementInterval interval = fullInterval();
    const QByteArray bytes = encodedFrame(interval, 3.5, 4.25);

    ASSERT_EQ(bytes.size(), 624);
    EXPECT_EQ(float64At(bytes, 0), 3.5);
    EXPECT_EQ(float64At(bytes, 8), 4.25);
    EXPECT_EQ(float64At(bytes, 16), interval.energy);
    EXPECT_EQ(float64At(bytes, 24), interval.peakPower);
    EXPECT_EQ(float64At(bytes, 32), interval.rawEnergy);
    EXPECT_EQ(uint32At(bytes, 40), 4800u);
    EXPECT_EQ(float32At(bytes, 44), 48000.0f);
    EXPECT_EQ(float32At(bytes, 48), 94.25f);
    EXPECT_EQ(float32At(bytes, 52), 96.5f);
    EXPECT_EQ(float32At(bytes, 56), 1000.5f);
    EXPECT_EQ(float32At(bytes, 60), 2500.25f);
    EXPECT_EQ(float32At(bytes, 64), 88.5f);
    EXPECT_EQ(float32At(bytes, 68), 31.75f);
    EXPECT_EQ(float32At(bytes, 72), -42.5f);
    EXPECT_EQ(uint32At(bytes, 76), 0b111u);
    EXPECT_EQ(int16At(bytes, 80), 4000);
    EXPECT_EQ(int16At(bytes, 80 + 2 * 30), 7750);
    EXPECT_EQ(int16At(bytes, 142), -20000);
    EXPECT_EQ(int16At(bytes, 142 + 2 * 239), -200 * 100 + 239 * 75);
    EXPECT_TRUE(allZero(bytes, 622, 624));
}

TEST(RecordingFormat, BandLevelsAreClampedToSixteenBitHundredths)
{
    MeasurementInterval interval = fullInterval();
    interval.spectrum->bandLevels[0] = 327.68;
    interval.spectrum->bandLevels[1] = -200.0;
    interval.spectrum->bandLevels[2] = -400.0;
    interval.spectrum->bandLevels[3] = 0.125; // half a hundredth: away from zero
    interval.spectrum->bandLevels[4] = -0.125;
    interval.spectrum->bandLevels[5] = std::numeric_limits<double>::infinity();
    interval.spectrum->fineBandLevels[0] = 1000.0;
    const QByteArray bytes = encodedFrame(interval);

    EXPECT_EQ(int16At(bytes, 80), 32767);
    EXPECT_EQ(int16At(bytes, 82), -20000);
    EXPECT_EQ(int16At(bytes, 84), -32768);
    EXPECT_EQ(int16At(bytes, 86), 13);
    EXPECT_EQ(int16At(bytes, 88), -13);
    EXPECT_EQ(int16At(bytes, 90), 32767);
    EXPECT_EQ(int16At(bytes, 142), 32767);

    const auto frame = Format::decode(bytes, 0, true);
    ASSERT_TRUE(frame && frame->interval.spectrum);
    EXPECT_EQ(frame->interval.spectrum->bandLevels[0], 327.67);
    EXPECT_EQ(frame->interval.spectrum->bandLevels[1], -200.0);
    EXPECT_EQ(frame->interval.spectrum->bandLevels[2], -327.68);
    EXPECT_EQ(frame->interval.spectrum->bandLevels[3], 0.13);
    EXPECT_EQ(frame->interval.spectrum->fineBandLevels[0], 327.67);
}

TEST(RecordingFormat, IntervalWithoutSpectrumHasFlagBitOneClearNaNPeakFieldsAndZeroBands)
{
    MeasurementInterval interval = fullInterval();
    interval.spectrum.reset();
    interval.clipped = false;
    const QByteArray bytes = encodedFrame(interval);

    EXPECT_EQ(uint32At(bytes, 76), 0u);
    for (std::size_t offset = 56; offset <= 72; offset += 4)
        EXPECT_TRUE(std::isnan(float32At(bytes, offset))) << offset;
    EXPECT_TRUE(allZero(bytes, 80, 624));

    const auto frame = Format::decode(bytes, 0, true);
    ASSERT_TRUE(frame.has_value());
    EXPECT_FALSE(frame->interval.spectrum.has_value());
    EXPECT_EQ(frame->interval, interval);
}

TEST(RecordingFormat, SpectrumWithoutPeakHasBitOneSetBitTwoClearAndNaNPeakFields)
{
    MeasurementInterval interval = fullInterval();
    interval.spectrum->peak.reset();
    const QByteArray bytes = encodedFrame(interval);

    EXPECT_EQ(uint32At(bytes, 76), 0b011u);
    EXPECT_EQ(float32At(bytes, 56), 1000.5f);
    for (std::size_t offset = 60; offset <= 72; offset += 4)
        EXPECT_TRUE(std::isnan(float32At(bytes, offset))) << offset;

    const auto frame = Format::decode(bytes, 0, true);
    ASSERT_TRUE(frame && frame->interval.spectrum);
    EXPECT_FALSE(frame->interval.spectrum->peak.has_value());
    EXPECT_EQ(frame->interval.spectrum->dominantFrequency, 1000.5);
}

TEST(RecordingFormat, MissingDominantFrequencyIsStoredAsNaNAndReadsAbsent)
{
    MeasurementInterval interval = fullInterval();
    interval.spectrum->dominantFrequency.reset();
    const QByteArray bytes = encodedFrame(interval);
    EXPECT_TRUE(std::isnan(float32At(bytes, 56)));
    const auto frame = Format::decode(bytes, 0, true);
    ASSERT_TRUE(frame && frame->interval.spectrum);
    EXPECT_FALSE(frame->interval.spectrum->dominantFrequency.has_value());
}

TEST(RecordingFormat, PeakFlagWithANaNFrequencyReadsAsNoPeak)
{
    QByteArray bytes = encodedFrame(fullInterval());
    qToLittleEndian(
        std::bit_cast<quint32>(std::numeric_limits<float>::quiet_NaN()), bytes.data() + 60);
    const auto frame = Format::decode(bytes, 0, true);
    ASSERT_TRUE(frame && frame->interval.spectrum);
    EXPECT_FALSE(frame->interval.spectrum->peak.has_value());
}

TEST(RecordingFormat, DecodingWithoutSpectrumLeavesItOut)
{
    const auto frame = Format::decode(encodedFrame(fullInterval()), 0, false);
    ASSERT_TRUE(frame.has_value());
    EXPECT_FALSE(frame->interval.spectrum.has_value());
    EXPECT_TRUE(frame->interval.clipped);
    EXPECT_EQ(frame->interval.level, 94.25);
}

TEST(RecordingFormat, SampleCountIsClampedToThirtyTwoBits)
{
    MeasurementInterval interval = fullInterval();
    interval.sampleCount = 5'000'000'000;
    EXPECT_EQ(uint32At(encodedFrame(interval), 40), 4'294'967'295u);
    interval.sampleCount = -5;
    EXPECT_EQ(uint32At(encodedFrame(interval), 40), 0u);
}

TEST(RecordingFormat, LevelsBeyondTheFloatRangeBecomeInfinite)
{
    MeasurementInterval interval = fullInterval();
    interval.level = 1e300;
    interval.maxLevel = -1e300;
    const QByteArray bytes = encodedFrame(interval);
    EXPECT_EQ(float32At(bytes, 48), std::numeric_limits<float>::infinity());
    EXPECT_EQ(float32At(bytes, 52), -std::numeric_limits<float>::infinity());
}

TEST(RecordingFormat, FramesDecodeAtTheirOffset)
{
    MeasurementInterval second = fullInterval();
    second.level = 60.0;
    const QByteArray bytes = Format::header() + encodedFrame(fullInterval(), 0.1, 0.1)
        + encodedFrame(second, 0.2, 0.25);

    const auto frame = Format::decode(bytes, 32 + 624, true);
    ASSERT_TRUE(frame.has_value());
    EXPECT_EQ(frame->audioTime, 0.2);
    EXPECT_EQ(frame->wallTime, 0.25);
    EXPECT_EQ(frame->interval.level, 60.0);
}

TEST(RecordingFormat, TooFewBytesDecodeToNothing)
{
    const QByteArray bytes = encodedFrame(fullInterval());
    EXPECT_FALSE(Format::decode(bytes.left(623), 0, false).has_value());
    EXPECT_FALSE(Format::decode(bytes, 1, false).has_value());
    EXPECT_FALSE(Format::decode(bytes, -1, false).has_value());
    EXPECT_TRUE(Format::decode(bytes, 0, false).has_value());
}
