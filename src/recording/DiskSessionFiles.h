#pragma once

// Session files on this computer's disk. A write goes to a temporary file that replaces the old
// one only when whole, so a crash mid-write leaves the previous file.
#include "sessions/SessionFiles.h"

namespace ostrel {

class DiskSessionFiles final : public SessionFiles {
public:
    bool makeFolder(const QString& path) override;
    bool write(const QString& path, const QByteArray& bytes) override;
    std::optional<QByteArray> read(const QString& path) const override;
};

} // namespace ostrel
