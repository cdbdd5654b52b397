#pragma once

// Session files in memory, with folders that must exist before a file goes in, as on a disk.
#include <QMap>
#include <QSet>
#include <QStringList>

#include "sessions/SessionFiles.h"

namespace ostrel::sessions_test {

class MemorySessionFiles final : public SessionFiles {
public:
    QMap<QString, QByteArray> files;
    QSet<QString> folders {QStringLiteral("/")};
    bool refusesWrites = false;

    bool makeFolder(const QString& path) override
    {
        QStringList missing;
        for (QString folder = path; folder != u"/"; folder = parent(folder)) {
            if (files.contains(folder)) return false; // a file stands in the way
            missing.append(folder);
        }
        for (const QString& folder : missing)
            folders.insert(folder);
        return true;
    }

    bool write(const QString& path, const QByteArray& bytes) override
    {
        if (refusesWrites || !folders.contains(parent(path))) return false;
        files.insert(path, bytes);
        return true;
    }

    std::optional<QByteArray> read(const QString& path) const override
    {
        const auto found = files.constFind(path);
        if (found == files.constEnd()) return std::nullopt;
        return *found;
    }

    // The names of the files directly in `folder`, sorted.
    QStringList filesIn(const QString& folder) const
    {
        QStringList names;
        for (auto file = files.constBegin(); file != files.constEnd(); ++file)
            if (parent(file.key()) == folder) names.append(file.key().mid(folder.size() + 1));
        return names;
    }

    static QString parent(const QString& path)
    {
        const auto slash = path.lastIndexOf(u'/');
        return slash <= 0 ? QStringLiteral("/") : path.left(slash);
    }
};

} // namespace ostrel::sessions_test
