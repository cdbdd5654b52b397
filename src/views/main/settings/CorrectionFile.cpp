#include "views/main/settings/CorrectionFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace ostrel::CorrectionFile {

namespace {

// Calibration files are a few kilobytes; anything this big is not one.
constexpr qint64 largestFile = 16 * 1024 * 1024;

QString unreadable()
{
    return QString::fromUtf8(MicrophoneCorrection::unreadableFileMessage());
}

} // namespace

std::optional<QString> decode(const QByteArray& bytes)
{
    if (const auto encoding = QStringConverter::encodingForData(bytes)) {
        QStringDecoder decoder(*encoding);
        QString text = decoder.decode(bytes);
        if (decoder.hasError()) return std::nullopt;
        return text;
    }
    if (bytes.contains('\0')) return std::nullopt;
    QStringDecoder utf8(QStringConverter::Utf8);
    QString text = utf8.decode(bytes);
    if (!utf8.hasError()) return text;
    return QString::fromLatin1(bytes);
}

std::variant<MicrophoneCorrection, QString> load(const QString& path)
{
    if (path.isEmpty()) return unreadable();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestFile) return unreadable();
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) return unreadable();
    const auto text = decode(bytes);
    if (!text) return unreadable();
    const QByteArray utf8 = text->toUtf8();
    auto parsed = MicrophoneCorrection::parsing(
        std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())),
        QFileInfo(path).fileName().toStdString());
    if (const auto* error = std::get_if<MicrophoneCorrection::ParseError>(&parsed))
        return QString::fromUtf8(MicrophoneCorrection::message(*error));
    return std::get<MicrophoneCorrection>(std::move(parsed));
}

} // namespace ostrel::CorrectionFile
