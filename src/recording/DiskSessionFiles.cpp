#include "recording/DiskSessionFiles.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace ostrel {

bool DiskSessionFiles::makeFolder(const QString& path)
{
    return QDir().mkpath(path);
}

bool DiskSessionFiles::write(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    if (file.write(bytes) != bytes.size()) return false;
    return file.commit();
}

std::optional<QByteArray> DiskSessionFiles::read(const QString& path) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    return file.readAll();
}

} // namespace ostrel
