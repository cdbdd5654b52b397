#pragma once

// The HTTPS control API for outside software of Sennheiser EW-DX receivers (SSCv2, firmware 4.0
// or later): the paths the station subscribes to and what it reads from the event stream.
#include <map>
#include <optional>
#include <set>
#include <utility>

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace ostrel::EWDXProtocol {

struct ChannelState {
    std::optional<QString> name;
    std::set<QString> channelWarnings;
    std::set<QString> transmitterWarnings;
    // A channel counts as silent until its first channel warnings event.
    bool hasReported = false;

    bool hasSignal() const;
    bool lowSignal() const;
    bool lowBattery() const;

    friend bool operator==(const ChannelState&, const ChannelState&) = default;
};

using ChannelStates = std::map<qint64, ChannelState>;

// Compared by disjointness, so that further words can join.
const std::set<QString>& dropoutWarnings();
const std::set<QString>& lowSignalWarnings();

// 4 when the product names a four-channel model, else 2.
int channelCount(const QString& product);
// The paths to subscribe for one channel, counted from 0.
QStringList subscriptionPaths(qint64 channel);

// Reads one event's data into the states; the indexes of the channels written.
std::set<qint64> apply(const QByteArray& message, ChannelStates& states);

// The JSON bodies of the two GETs and of the "open" event; nothing when absent or unreadable.
std::optional<QString> product(const QByteArray& identityBody);
std::optional<QString> deviceName(const QByteArray& siteBody);
std::optional<QString> sessionUUID(const QByteArray& openData);

struct Event {
    QString name;
    QString data;

    friend bool operator==(const Event&, const Event&) = default;
};

// The stream's line rules: "event:" names the next data, "data:" carries it and resets the name
// to "message", every other line (blank ones too) is ignored.
class EventReader {
public:
    std::optional<Event> read(const QString& line);

private:
    QString pending_ = QStringLiteral("message");
};

// The last event the lines give, by the rules of `EventReader`.
std::optional<Event> parseEvent(const QStringList& lines);

} // namespace ostrel::EWDXProtocol
