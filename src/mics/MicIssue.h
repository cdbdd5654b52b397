#pragma once

// A problem with a radio mic the crew must see: what, on which channel, and since when.
#include <array>
#include <optional>

#include <QJsonObject>
#include <QString>

#include "common/Date.h"

namespace ostrel {

// Ordered by raw value: the order the alert list shows them in.
enum class MicIssueKind { dropout = 0, receiverOffline = 1, lowSignal = 2, lowBattery = 3 };

namespace MicIssueKinds {

inline constexpr std::array<MicIssueKind, 4> all {MicIssueKind::dropout,
    MicIssueKind::receiverOffline, MicIssueKind::lowSignal, MicIssueKind::lowBattery};

int rawValue(MicIssueKind kind);
std::optional<MicIssueKind> fromRawValue(long long raw);
QString title(MicIssueKind kind);
// Dropouts and silent receivers are red; weak signals and batteries orange.
bool isUrgent(MicIssueKind kind);

} // namespace MicIssueKinds

struct MicIssue {
    // The channel key, or for a silent receiver the receiver's key alone.
    QString key;
    QString name;
    MicIssueKind kind = MicIssueKind::dropout;
    Date since {};

    // Identity and de-duplication: key, "|", raw kind.
    QString id() const;

    // "since" in seconds since 2001-01-01, as the crew's dates are.
    QJsonObject toJson() const;
    static std::optional<MicIssue> fromJson(const QJsonObject& object);

    // All four fields, `since` included: a re-raised issue is a change.
    friend bool operator==(const MicIssue&, const MicIssue&) = default;
};

QString micIssueId(const QString& key, MicIssueKind kind);

} // namespace ostrel
