#pragma once

// Where session files are kept. The archive reads and writes through this face, so the sessions
// logic never touches a disk itself: the station hands it the disk, tests a map in memory.
#include <optional>

#include <QByteArray>
#include <QString>

namespace ostrel {

class SessionFiles {
public:
    virtual ~SessionFiles() = default;

    // Makes the folder and any missing folders above it; true when it is there afterwards.
    virtual bool makeFolder(const QString& path) = 0;
    // Replaces the file as a whole or leaves what was there; never creates a folder.
    virtual bool write(const QString& path, const QByteArray& bytes) = 0;
    // Nothing when the file can't be read.
    virtual std::optional<QByteArray> read(const QString& path) const = 0;
};

} // namespace ostrel
