#include "sessions/SessionArchive.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QStandardPaths>

#include "common/IsoDate.h"

namespace ostrel::SessionArchive {

QString folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
        + QStringLiteral("/Sessions");
}

QString baseName(Date date)
{
    return IsoDate::toQDateTime(date)
        .toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss"))
        .replace(QLatin1Char(':'), QLatin1Char('-'));
}

QString recordingFolder(const QString& name, const QString& root)
{
    return root + QLatin1Char('/') + name;
}

QString encodeDate(Date date)
{
    return IsoDate::string(date);
}

std::optional<Date> decodeDate(const QString& text, QString* error)
{
    // Qt's ISO reader also takes offsets, missing seconds and other fractions; session files
    // hold only these two forms.
    static const QRegularExpression form(
        QStringLiteral("^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(\\.[0-9]{3})?Z$"));
    if (form.match(text).hasMatch()) {
        if (auto date = IsoDate::parse(text)) return date;
    }
    if (error) *error = QStringLiteral("Not an ISO 8601 date: ") + text;
    return std::nullopt;
}

QByteArray encode(const ShowSession& session)
{
    return QJsonDocument(session.toJson()).toJson(QJsonDocument::Compact);
}

std::optional<ShowSession> decode(const QByteArray& json, QString* error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        if (error) *error = parseError.errorString();
        return std::nullopt;
    }
    if (!document.isObject()) {
        if (error) *error = QStringLiteral("A session file holds one object.");
        return std::nullopt;
    }
    return ShowSession::fromJson(document.object(), error);
}

QString path(const ShowSession& session, const QString& root)
{
    return session.recordingFolderName
        ? recordingFolder(*session.recordingFolderName, root) + QStringLiteral("/session.json")
        : root + QLatin1Char('/') + baseName(session.start) + QStringLiteral(".json");
}

bool save(const ShowSession& session, SessionFiles& files, const QString& root)
{
    if (!files.makeFolder(root)) return false;
    return files.write(path(session, root), encode(session));
}

std::optional<ShowSession> load(const QString& path, const SessionFiles& files)
{
    const auto bytes = files.read(path);
    if (!bytes) return std::nullopt;
    return decode(*bytes);
}

} // namespace ostrel::SessionArchive
