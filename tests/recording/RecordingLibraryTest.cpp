#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "recording/DiskSessionFiles.h"
#include "recording/RecordingLibrary.h"
#include "sessions/SessionArchive.h"
#include "sessions/SessionSamples.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

class RecordingLibraryScan : public ::testing::Test {
protected:
    QTemporaryDir temporary;
    QString sessions() const { return temporary.filePath("Sessions"); }

    // A recording folder named after its start, with the files asked for.
    QString makeRecording(
        const QString& name, double start, bool withSession, bool withAudio, bool withFrames)
    {
        ShowSession session;
        session.name = name;
        session.start = at(start);
        session.recordingFolderName = SessionArchive::baseName(session.start);
        const QString folder
            = SessionArchive::recordingFolder(*session.recordingFolderName, sessions());
        EXPECT_TRUE(QDir().mkpath(folder));
        DiskSessionFiles files;
        if (withSession) {
            EXPECT_TRUE(SessionArchive::save(session, files, sessions()));
        }
        if (withAudio) {
            EXPECT_TRUE(files.write(folder + "/audio.aac", QByteArray(1000, 'a')));
        }
        if (withFrames) {
            EXPECT_TRUE(files.write(folder + "/measurements.ostrel", QByteArray(500, 'm')));
        }
        return folder;
    }
};

} // namespace

TEST_F(RecordingLibraryScan, AFolderWithSoundAndFramesButNoReadableSessionIsNotListed)
{
    makeRecording("Lost", 0.0, false, true, true);
    const QString broken = makeRecording("Broken", 10.0, false, true, true);
    ASSERT_TRUE(DiskSessionFiles().write(broken + "/session.json", "{not json"));
    EXPECT_TRUE(RecordingLibrary::scan(sessions()).empty());
}

TEST_F(RecordingLibraryScan, AFolderWithOnlyItsSessionIsListedWithoutSoundOrFrames)
{
    makeRecording("Evening", 0.0, true, false, false);
    const auto listed = RecordingLibrary::scan(sessions());
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].session.name, "Evening");
    EXPECT_FALSE(listed[0].hasAudio);
    EXPECT_FALSE(listed[0].hasMeasurements);
}

TEST_F(RecordingLibraryScan, RecordingsAreNewestFirstWithTheSizeOfTheirFiles)
{
    makeRecording("Matinee", 0.0, true, true, true);
    makeRecording("Evening", 3600.0, true, true, false);
    // A session without recording is a file beside the folders, not a recording.
    ShowSession loose;
    loose.name = "Loose";
    loose.start = at(7200.0);
    ASSERT_TRUE(SessionArchive::save(loose, *std::make_unique<DiskSessionFiles>(), sessions()));

    const auto listed = RecordingLibrary::scan(sessions());
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_EQ(listed[0].session.name, "Evening");
    EXPECT_EQ(listed[1].session.name, "Matinee");
    EXPECT_TRUE(listed[1].hasAudio);
    EXPECT_TRUE(listed[1].hasMeasurements);
    const qint64 sessionFile = QFileInfo(listed[1].folder + "/session.json").size();
    EXPECT_EQ(listed[1].size, 1000 + 500 + sessionFile);
}

TEST_F(RecordingLibraryScan, TwoRecordingsAreEqualOnlyWhenTheirFoldersAre)
{
    Recording first;
    first.folder = "/Sessions/a";
    first.session.name = "One";
    Recording same = first;
    same.session.name = "Another";
    same.hasAudio = true;
    Recording other = first;
    other.folder = "/Sessions/b";
    EXPECT_EQ(first, same);
    EXPECT_NE(first, other);
}

TEST_F(RecordingLibraryScan, AMissingSessionsFolderHasNoRecordings)
{
    EXPECT_TRUE(RecordingLibrary::scan(temporary.filePath("nowhere")).empty());
}

TEST(RecordingLibrary, AnHourTakesTenFramesASecondAndTheSound)
{
    EXPECT_EQ(RecordingLibrary::bytesPerHour,
        (10 * static_cast<qint64>(RecordingFormat::frameSize) + 8000) * 3600);
}
