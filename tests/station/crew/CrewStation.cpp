// One station of a crew as its own process, for the tests that link several: a live central
// model over the private PulseAudio server, its settings from a file. It prints what its screens
// would show as one JSON line whenever that changes, and takes the operator's actions from its
// standard input, one per line: "send TEXT", "urgent TEXT", "ack ID", "role RAW".
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "audio/QtAudioCaptureBackend.h"
#include "station/AppModel.h"

using namespace ostrel;

namespace {

QString statusText(const CrewLink& crew)
{
    switch (crew.statusKind()) {
    case CrewLink::StatusKind::sharing:
        return QStringLiteral("sharing %1").arg(crew.statusSecondaries());
    case CrewLink::StatusKind::connecting:
        return QStringLiteral("connecting ") + crew.statusPeer();
    case CrewLink::StatusKind::connected:
        return QStringLiteral("connected ") + crew.statusPeer();
    case CrewLink::StatusKind::off:
        return QStringLiteral("off");
    case CrewLink::StatusKind::searching:
        return QStringLiteral("searching");
    }
    return QString();
}

QJsonObject snapshot(AppModel& model)
{
    CrewLink& crew = model.crew();
    QJsonObject out;
    out["role"] = QString::fromLatin1(CrewRoles::rawValue(crew.role()));
    out["status"] = statusText(crew);
    out["live"] = model.isMirrorLive();
    out["audioRunning"] = model.audio().status() == AudioInput::Status::running;
    // Tenths of a dB: a line per change of what a screen shows, not per interval.
    if (const auto level = model.meter().level()) out["level"] = std::round(*level * 10.0) / 10.0;
    if (const auto leq = model.meter().statistics().leq())
        out["leq"] = std::round(*leq * 100.0) / 100.0;
    out["qlab"] = QString::fromLatin1(QLabClientStates::rawValue(model.qlab().state()));
    QJsonArray cues;
    for (const QLabCue& cue : model.qlab().runningCues())
        cues.append(cue.number + u' ' + cue.name);
    out["cues"] = cues;
    QJsonArray dante;
    for (const DanteDevice& device : model.dante().devices())
        dante.append(device.name() + (device.isOnline ? QString() : QStringLiteral(" (offline)")));
    out["dante"] = dante;
    QJsonArray messages;
    for (const ChatMessage& message : crew.messages()) {
        messages.append(QJsonObject {{"id", message.id.toString(QUuid::WithoutBraces).toUpper()},
            {"sender", message.sender}, {"text", message.text}, {"urgent", message.isUrgent},
            {"acknowledgedBy", QJsonArray::fromStringList(message.acknowledgedBy)}});
    }
    out["messages"] = messages;
    QJsonArray pending;
    for (const ChatMessage& message : crew.pendingUrgent())
        pending.append(message.id.toString(QUuid::WithoutBraces).toUpper());
    out["pendingUrgent"] = pending;
    out["urgentFlashCount"] = crew.urgentFlashCount();
    out["unreadCount"] = crew.unreadCount();
    out["stations"] = QJsonArray::fromStringList(crew.stations());
    return out;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: crew_station SETTINGS.ini SESSIONS-FOLDER\n");
        return 2;
    }
    QSettings store(QString::fromLocal8Bit(argv[1]), QSettings::IniFormat);
    QLabClient::Timings qlabTimings;
    qlabTimings.settleMs = 50;
    qlabTimings.reconnectMs = 200;
    qlabTimings.pollMs = 100;
    CrewLink::Timings crewTimings;
    crewTimings.retryAfterFailure = std::chrono::milliseconds(300);
    crewTimings.retryAfterLoss = std::chrono::milliseconds(200);
    crewTimings.watchdogTick = std::chrono::milliseconds(100);
    crewTimings.dnsSdRetry = std::chrono::milliseconds(300);
    crewTimings.silenceLimit = 0.5;
    auto* model = new AppModel(AppModel::Mode::live, std::make_unique<AppSettings>(store),
        std::make_unique<QtAudioCaptureBackend>(), qlabTimings, QString::fromLocal8Bit(argv[2]), {},
        crewTimings);
    model->setMirrorShareInterval(std::chrono::milliseconds(100));

    QByteArray last;
    QTimer printer;
    QObject::connect(&printer, &QTimer::timeout, [&] {
        const QByteArray line = QJsonDocument(snapshot(*model)).toJson(QJsonDocument::Compact);
        if (line == last) return;
        last = line;
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
        std::fputc('\n', stdout);
        std::fflush(stdout);
    });
    printer.start(50);

    QByteArray input;
    QSocketNotifier commands(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&commands, &QSocketNotifier::activated, [&] {
        char buffer[4096];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0) {
            // The test has gone: so does the station, without Qt's teardown (see PulseTestMain).
            std::fflush(nullptr);
            std::_Exit(0);
        }
        input.append(buffer, count);
        qsizetype end = 0;
        while ((end = input.indexOf('\n')) >= 0) {
            const QString line = QString::fromUtf8(input.left(end));
            input.remove(0, end + 1);
            const QString verb = line.section(u' ', 0, 0);
            const QString rest = line.section(u' ', 1);
            if (verb == QLatin1String("send") || verb == QLatin1String("urgent"))
                model->crew().send(
                    rest, verb == QLatin1String("urgent"), std::nullopt, model->currentCueLabel());
            else if (verb == QLatin1String("ack"))
                model->crew().acknowledge(QUuid::fromString(rest));
            else if (verb == QLatin1String("role")) {
                if (const auto role = CrewRoles::fromRawValue(rest.toStdString()))
                    model->settings().crew().setRole(*role);
            }
        }
    });
    return application.exec();
}
