#include "mics/G4Protocol.h"

#include <QRegularExpression>
#include <QStringList>

namespace ostrel::G4Protocol {

namespace {

const QString rfMute = QStringLiteral("RF_Mute");

std::optional<qint64> integer(const QString& text)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    return ok ? std::optional<qint64>(value) : std::nullopt;
}

// Lines the receiver sends that say nothing the station uses, but prove it is alive.
bool isIgnoredKnownCommand(const QString& command)
{
    static const QStringList known {QStringLiteral("RF1"), QStringLiteral("RF2"),
        QStringLiteral("AF"), QStringLiteral("States"), QStringLiteral("Config"),
        QStringLiteral("Push"), QStringLiteral("Mute"), QStringLiteral("Squelch"),
        QStringLiteral("Frequency")};
    return known.contains(command);
}

bool applyLine(const QStringList& tokens, Status& status)
{
    const QString& command = tokens.front();
    const QStringList arguments = tokens.mid(1);
    if (command == u"Name") {
        const QString name = arguments.join(u' ').trimmed();
        status.name = name.isEmpty() ? std::nullopt : std::optional<QString>(name);
    } else if (command == u"RF") {
        status.rfLevel = arguments.isEmpty() ? std::nullopt : integer(arguments[0]);
        if (arguments.size() >= 3) status.pilot = arguments[2] == u"1";
    } else if (command == u"Bat") {
        // A battery field that is no number is legal on the wire.
        status.battery = arguments.isEmpty() ? std::nullopt : integer(arguments[0]);
    } else if (command == u"Msg") {
        status.warnings.clear();
        for (const QString& word : arguments) {
            if (word != u"OK") status.warnings.insert(word);
        }
    } else {
        return isIgnoredKnownCommand(command);
    }
    return true;
}

} // namespace

bool Status::hasSignal() const
{
    return !warnings.contains(rfMute) && rfLevel.has_value();
}

bool Status::lowSignal() const
{
    return warnings.contains(QStringLiteral("Low_RF_Signal"));
}

bool Status::lowBattery() const
{
    return warnings.contains(QStringLiteral("Low_Battery"));
}

QByteArray push(qint64 timeout, qint64 cycleMilliseconds, qint64 mode)
{
    return "Push " + QByteArray::number(timeout) + ' ' + QByteArray::number(cycleMilliseconds) + ' '
        + QByteArray::number(mode) + '\r';
}

QByteArray nameRequest()
{
    return QByteArrayLiteral("Name\r");
}

QByteArray subscribePush()
{
    return push(60, 500, 7);
}

QByteArray stopPush()
{
    return push(0, 0, 0);
}

bool apply(const QString& text, Status& status, Date at)
{
    bool anyKnown = false;
    static const QRegularExpression lineBreaks(QStringLiteral("[\r\n]"));
    for (const QString& line : text.split(lineBreaks, Qt::SkipEmptyParts)) {
        const QStringList tokens = line.split(u' ', Qt::SkipEmptyParts);
        if (tokens.isEmpty()) continue;
        if (applyLine(tokens, status)) anyKnown = true;
    }
    if (anyKnown) status.lastHeard = at;
    return anyKnown;
}

} // namespace ostrel::G4Protocol
