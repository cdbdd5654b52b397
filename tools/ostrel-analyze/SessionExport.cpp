#include "ostrel-analyze/SessionExport.h"

#include <chrono>
#include <cstdio>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "sessions/CSVExporter.h"
#include "sessions/SessionArchive.h"

namespace ostrel::analyze {

namespace {

int fail(std::ostream& errors, const QString& message)
{
    errors << "ostrel-analyze: " << message.toStdString() << '\n';
    return 2;
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

} // namespace

int exportSession(const ExportRequest& request, std::ostream& errors)
{
    QString path = QString::fromStdString(request.sessionPath);
    if (QFileInfo(path).isDir()) path += QStringLiteral("/session.json");
    if (!QFileInfo::exists(path)) return fail(errors, "there is no session at " + quoted(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(errors, "cannot read " + quoted(path) + ": " + file.errorString());
    QString problem;
    const auto session = SessionArchive::decode(file.readAll(), &problem);
    if (!session) return fail(errors, quoted(path) + " is not a session: " + problem);

    // A show saved while it ran has every cue ended; "now" only covers a file cut short.
    const Date now = session->end.value_or(std::chrono::system_clock::now());
    const QString csv = request.kind == ExportRequest::Kind::levels
        ? CSVExporter::levels(session->levels)
        : CSVExporter::cues(session->cues, now);
    const QByteArray bytes = csv.toUtf8();

    if (request.csvPath == "-") {
        if (std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout)
                != static_cast<std::size_t>(bytes.size())
            || std::fflush(stdout) != 0)
            return fail(errors, QStringLiteral("cannot write the output"));
        return 0;
    }
    const QString target = QString::fromStdString(request.csvPath);
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit())
        return fail(errors, "cannot write " + quoted(target) + ": " + out.errorString());
    return 0;
}

} // namespace ostrel::analyze
