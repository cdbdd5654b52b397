#include "recording/RecordingFile.h"

#include <QFile>
#include <memory>

#include "sessions/RecordingFormat.h"

namespace ostrel::RecordingFile {

std::optional<RecordingFrames> open(const QString& path)
{
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly)) return std::nullopt;
    const qint64 size = file->size();
    if (size < static_cast<qint64>(RecordingFormat::headerSize)) return std::nullopt;
    // Mapped, not read: a show's frames run to tens of megabytes and a seek touches a few pages.
    const uchar* mapped = file->map(0, size);
    if (!mapped) return std::nullopt;
    const QByteArrayView bytes(reinterpret_cast<const char*>(mapped), size);
    return RecordingFrames::fromMapping(std::move(file), bytes);
}

} // namespace ostrel::RecordingFile
