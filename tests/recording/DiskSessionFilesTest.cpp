#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "recording/DiskSessionFiles.h"
#include "sessions/SessionArchive.h"
#include "sessions/SessionSamples.h"

using namespace ostrel;
using namespace ostrel::sessions_test;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return file.readAll();
}

ShowSession evening()
{
    ShowSession session;
    session.name = "Evening";
    session.start = at(0.0);
    session.end = at(3600.0);
    session.meterSetting = "A / Fast";
    return session;
}

} // namespace

TEST(DiskSessionFiles, ASessionSavedToDiskCreatesItsFoldersAndLoadsBack)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    DiskSessionFiles files;
    const QString root = temporary.filePath("Application Support/Ostrel/Sessions");

    ASSERT_TRUE(SessionArchive::save(evening(), files, root));

    const QString path = root + "/" + SessionArchive::baseName(at(0.0)) + ".json";
    EXPECT_EQ(contents(path), SessionArchive::encode(evening()));
    EXPECT_EQ(SessionArchive::load(path, files), evening());
    EXPECT_EQ(QDir(root).entryList(QDir::Files).size(), 1);
}

TEST(DiskSessionFiles, AWriteReplacesTheWholeFileAndLeavesNoTemporaryBehind)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    DiskSessionFiles files;
    const QString path = temporary.filePath("session.json");
    ASSERT_TRUE(files.write(path, QByteArray(4096, 'a')));
    ASSERT_TRUE(files.write(path, "short"));
    EXPECT_EQ(contents(path), "short");
    EXPECT_EQ(
        QDir(temporary.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"session.json"});
}

TEST(DiskSessionFiles, AWriteIntoAMissingFolderFailsAndCreatesNothing)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    DiskSessionFiles files;
    EXPECT_FALSE(files.write(temporary.filePath("gone/session.json"), "{}"));
    EXPECT_FALSE(QDir(temporary.filePath("gone")).exists());
}

TEST(DiskSessionFiles, AFolderCannotBeMadeWhereAFileStands)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    DiskSessionFiles files;
    ASSERT_TRUE(files.write(temporary.filePath("occupied"), "a file, not a folder"));
    EXPECT_FALSE(files.makeFolder(temporary.filePath("occupied/Sessions")));
    EXPECT_FALSE(SessionArchive::save(evening(), files, temporary.filePath("occupied/Sessions")));
}

TEST(DiskSessionFiles, AMissingFileReadsAsNothing)
{
    QTemporaryDir temporary;
    ASSERT_TRUE(temporary.isValid());
    DiskSessionFiles files;
    EXPECT_FALSE(files.read(temporary.filePath("missing.json")).has_value());
    EXPECT_FALSE(SessionArchive::load(temporary.filePath("missing.json"), files).has_value());
}
