#include "recording/RecordingFile.h"

#include <QFile>
#include <QFileInfo>
#include <memory>

#include "sessions/RecordingFormat.h"

namespace ostrel::RecordingFile {

Opened open(const QString& path)
{
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly)) return {std::nullopt, file->errorString()};
    const QString corrupt = RecordingFrames::corruptFileError(QFileInfo(path).fileName());
    const qint64 size = file->size();
    if (size < static_cast<qint64>(RecordingFormat::headerSize)) return {std::nullopt, corrupt};
    // Mapped, not read: a show's frames run to tens of megabytes and a seek touches a few pages.
    const uchar* mapped = file->map(0, size);
    if (!mapped) return {std::nullopt, file->errorString()};
    const QByteArrayView bytes(reinterpret_cast<const char*>(mapped), size);
    auto frames = RecordingFrames::fromMapping(std::move(file), bytes);
    if (!frames) return {std::nullopt, corrupt};
    return {std::move(frames), QString()};
}

} // namespace ostrel::RecordingFile
