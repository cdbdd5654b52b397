#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "recording/RecordingFile.h"
#include "sessions/RecordingFormat.h"
#include "support/RecordedFrameBytes.h"

using namespace ostrel;

namespace {

using Times = testsupport::FrameTimes;

QByteArray fileBytes(const std::vector<Times>& times)
{
    return testsupport::recordedFrameBytes(times);
}

bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

const std::vector<Times>& steady = testsupport::steadyFrameTimes;

} // namespace

TEST(RecordingFile, FilesOf31BytesOrAnotherBandCountFailToOpen)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QString shortFile = temporary.filePath("short.ostrel");
    ASSERT_TRUE(write(shortFile, RecordingFormat::header().left(31)));
    EXPECT_FALSE(RecordingFile::open(shortFile).frames.has_value());

    QByteArray otherBands = fileBytes(steady);
    otherBands[16] = 30;
    const QString foreignFile = temporary.filePath("foreign.ostrel");
    ASSERT_TRUE(write(foreignFile, otherBands));
    EXPECT_FALSE(RecordingFile::open(foreignFile).frames.has_value());

    const QString emptyFile = temporary.filePath("empty.ostrel");
    ASSERT_TRUE(write(emptyFile, {}));
    EXPECT_FALSE(RecordingFile::open(emptyFile).frames.has_value());
    EXPECT_FALSE(RecordingFile::open(temporary.filePath("missing.ostrel")).frames.has_value());
}

TEST(RecordingFile, MappedFileReadsItsFrames)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QString path = temporary.filePath(RecordingFormat::framesFileName);
    ASSERT_TRUE(write(path, fileBytes(steady)));

    auto opened = RecordingFile::open(path).frames;
    ASSERT_TRUE(opened.has_value());
    // A copy outlives the original and still reads the mapped bytes.
    const RecordingFrames copy = *opened;
    opened.reset();

    EXPECT_EQ(copy.count(), 4);
    EXPECT_EQ(copy.duration(), 0.4);
    EXPECT_EQ(copy.lastIndexAtOrBefore(0.25), 1);
    const auto frame = copy.frame(2, true);
    ASSERT_TRUE(frame.has_value());
    EXPECT_EQ(frame->audioTime, 0.3);
    EXPECT_EQ(frame->wallTime, 0.33);
    ASSERT_TRUE(frame->interval.spectrum.has_value());
    EXPECT_EQ(frame->interval.spectrum->bandLevels[30], 55.5);
}

TEST(RecordingFile, AForeignOrCutFileSaysItIsNotInTheCorrectFormatAndAMissingOneWhy)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    const QString expected = QString::fromUtf8(
        "The file \u201Cmeasurements.ostrel\u201D couldn\u2019t be opened because it isn\u2019t in "
        "the correct format.");
    const QString path = temporary.filePath("measurements.ostrel");

    ASSERT_TRUE(write(path, QByteArray(4096, 'x')));
    EXPECT_EQ(RecordingFile::open(path).error, expected);
    ASSERT_TRUE(write(path, RecordingFormat::header().left(31)));
    EXPECT_EQ(RecordingFile::open(path).error, expected);

    ASSERT_TRUE(write(path, fileBytes(steady)));
    const auto good = RecordingFile::open(path);
    EXPECT_TRUE(good.frames.has_value());
    EXPECT_TRUE(good.error.isEmpty());

    const auto missing = RecordingFile::open(temporary.filePath("gone/measurements.ostrel"));
    EXPECT_FALSE(missing.frames.has_value());
    EXPECT_FALSE(missing.error.isEmpty());
    EXPECT_NE(missing.error, expected);
}
