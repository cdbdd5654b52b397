#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "exposure/ExposureFormat.h"

using namespace ostrel;
namespace Format = ostrel::ExposureFormat;

namespace {

ExposureFrame frameAt(double audioTime, ExposureProfile profile)
{
    return ExposureFrame {audioTime, ExposureSample {3.5e8, 0.1, 2.25e11}, std::move(profile)};
}

QByteArray fileOf(std::initializer_list<ExposureFrame> frames)
{
    QByteArray bytes = Format::header();
    for (const ExposureFrame& frame : frames)
        bytes += Format::encode(frame);
    return bytes;
}

} // namespace

TEST(ExposureFormat, FramesOfEveryProfileReadBackAsWritten)
{
    for (const ExposureProfileKind kind : ExposureProfileKinds::all) {
        const ExposureProfile profile = kind == ExposureProfileKind::custom
            ? ExposureProfile::custom(20.0, 96.5, 2.0, 130.0)
            : ExposureProfile::builtIn(kind);
        const ExposureFrame frame = frameAt(12.5, profile);
        const QByteArray file = fileOf({frame});
        ASSERT_EQ(Format::frameCount(file), 1u);
        EXPECT_EQ(Format::decode(file, 0), frame) << ExposureProfileKinds::rawValue(kind);
    }
}

TEST(ExposureFormat, FieldsLieAtTheirOffsetsInLittleEndian)
{
    const QByteArray frame
        = Format::encode(frameAt(4.25, ExposureProfile::builtIn(ExposureProfileKind::din)));
    ASSERT_EQ(frame.size(), qsizetype(Format::frameSize));
    double value = 0.0;
    std::memcpy(&value, frame.constData() + Format::Offset::audioTime, 8);
    EXPECT_EQ(value, 4.25);
    std::memcpy(&value, frame.constData() + Format::Offset::limit, 8);
    EXPECT_EQ(value, 99.0);
    EXPECT_EQ(frame[Format::Offset::kind], char(ExposureProfileKind::din));
}

TEST(ExposureFormat, ALastFrameCutShortByACrashIsNotCounted)
{
    const auto profile = ExposureProfile::builtIn(ExposureProfileKind::who);
    QByteArray file = fileOf({frameAt(0.1, profile), frameAt(0.2, profile)});
    file += Format::encode(frameAt(0.3, profile)).left(20);
    EXPECT_EQ(Format::frameCount(file), 2u);
    EXPECT_FALSE(Format::decode(file, 2));
    EXPECT_EQ(Format::decode(file, 1)->audioTime, 0.2);
}

TEST(ExposureFormat, AFileThatIsNotOursHasNoFrames)
{
    QByteArray file = fileOf({frameAt(0.1, ExposureProfile::builtIn(ExposureProfileKind::who))});
    file[3] = 'X';
    EXPECT_EQ(Format::frameCount(file), 0u);
    EXPECT_EQ(Format::frameCount(QByteArray("short")), 0u);
    EXPECT_FALSE(Format::decode(file, 0));
}

TEST(ExposureFormat, AFrameWithAnUnknownProfileOrANonsenseWindowIsRefused)
{
    QByteArray file = fileOf({frameAt(0.1, ExposureProfile::builtIn(ExposureProfileKind::who))});
    file[qsizetype(Format::headerSize + Format::Offset::kind)] = 9;
    EXPECT_FALSE(Format::decode(file, 0));
    QByteArray zeroWindow
        = fileOf({frameAt(0.1, ExposureProfile::builtIn(ExposureProfileKind::who))});
    std::memset(zeroWindow.data() + Format::headerSize + Format::Offset::windowSeconds, 0, 8);
    EXPECT_FALSE(Format::decode(zeroWindow, 0));
}
