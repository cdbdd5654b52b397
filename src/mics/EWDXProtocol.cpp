#include "mics/EWDXProtocol.h"

#include <algorithm>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ostrel::EWDXProtocol {

namespace {

bool meets(const std::set<QString>& words, const std::set<QString>& warnings)
{
    return std::any_of(
        words.begin(), words.end(), [&](const QString& word) { return warnings.contains(word); });
}

QJsonObject objectOf(const QByteArray& body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    return document.isObject() ? document.object() : QJsonObject();
}

std::optional<QString> stringIn(const QByteArray& body, const QString& key)
{
    const QJsonValue value = objectOf(body).value(key);
    return value.isString() ? std::optional<QString>(value.toString()) : std::nullopt;
}

// A list of strings, or nothing at all for any other value.
std::set<QString> stringSet(const QJsonValue& value)
{
    if (!value.isArray()) return {};
    std::set<QString> words;
    for (const auto& element : value.toArray()) {
        if (!element.isString()) return {};
        words.insert(element.toString());
    }
    return words;
}

std::optional<qint64> channelIndex(const QString& text)
{
    bool ok = false;
    const qint64 index = text.toLongLong(&ok);
    return ok ? std::optional<qint64>(index) : std::nullopt;
}

} // namespace

bool ChannelState::hasSignal() const
{
    return hasReported && !meets(dropoutWarnings(), channelWarnings);
}

bool ChannelState::lowSignal() const
{
    return meets(lowSignalWarnings(), channelWarnings);
}

bool ChannelState::lowBattery() const
{
    return transmitterWarnings.contains(QStringLiteral("LowBattery"));
}

const std::set<QString>& dropoutWarnings()
{
    static const std::set<QString> words {QStringLiteral("NoLink")};
    return words;
}

const std::set<QString>& lowSignalWarnings()
{
    static const std::set<QString> words {QStringLiteral("LowSignal")};
    return words;
}

int channelCount(const QString& product)
{
    return product.toUpper().contains(QStringLiteral("4CH")) ? 4 : 2;
}

QStringList subscriptionPaths(qint64 channel)
{
    const QString n = QString::number(channel);
    return {QStringLiteral("/channel/") + n + QStringLiteral("/warnings"),
        QStringLiteral("/transmitters/") + n + QStringLiteral("/warnings"),
        QStringLiteral("/channel/") + n,
        QStringLiteral("/channel/") + n + QStringLiteral("/signalQualityIndicator")};
}

std::set<qint64> apply(const QByteArray& message, ChannelStates& states)
{
    std::set<qint64> written;
    const QJsonObject object = objectOf(message);
    for (auto it = object.begin(); it != object.end(); ++it) {
        QString path = it.key();
        // Firmware differs in whether it prefixes the paths.
        if (path.startsWith(QStringLiteral("/api/"))) path = path.mid(4);
        const QStringList pieces = path.split(u'/', Qt::SkipEmptyParts);
        if (pieces.size() < 2) continue;
        const auto index = channelIndex(pieces[1]);
        if (!index) continue;
        ChannelState state = states.count(*index) ? states.at(*index) : ChannelState {};
        const QJsonValue value = it.value();
        if (pieces.size() == 2) {
            if (pieces[0] != u"channel") continue;
            const QJsonValue name = value.toObject().value(QStringLiteral("name"));
            if (name.isString() && !name.toString().isEmpty()) state.name = name.toString();
        } else if (pieces[0] == u"channel" && pieces[2] == u"warnings") {
            state.channelWarnings = stringSet(value);
            state.hasReported = true;
        } else if (pieces[0] == u"transmitters" && pieces[2] == u"warnings") {
            state.transmitterWarnings = stringSet(value);
        } else {
            continue;
        }
        states.insert_or_assign(*index, std::move(state));
        written.insert(*index);
    }
    return written;
}

std::optional<QString> product(const QByteArray& identityBody)
{
    return stringIn(identityBody, QStringLiteral("product"));
}

std::optional<QString> deviceName(const QByteArray& siteBody)
{
    auto name = stringIn(siteBody, QStringLiteral("deviceName"));
    return name && !name->isEmpty() ? name : std::nullopt;
}

std::optional<QString> sessionUUID(const QByteArray& openData)
{
    return stringIn(openData, QStringLiteral("sessionUUID"));
}

std::optional<Event> EventReader::read(const QString& line)
{
    if (line.startsWith(QStringLiteral("event:"))) {
        pending_ = line.mid(6).trimmed();
        return std::nullopt;
    }
    if (!line.startsWith(QStringLiteral("data:"))) return std::nullopt;
    Event event {pending_, line.mid(5).trimmed()};
    pending_ = QStringLiteral("message");
    return event;
}

std::optional<Event> parseEvent(const QStringList& lines)
{
    EventReader reader;
    std::optional<Event> last;
    for (const QString& line : lines) {
        if (auto event = reader.read(line)) last = std::move(event);
    }
    return last;
}

} // namespace ostrel::EWDXProtocol
