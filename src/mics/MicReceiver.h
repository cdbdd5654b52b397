#pragma once

// A wireless receiver the user added: which protocol it speaks, where it is and what they call
// it. Its id is also the account of its password.
#include <array>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QUuid>

namespace ostrel {

enum class MicReceiverKind { g4, ewdx };

namespace MicReceiverKinds {

inline constexpr std::array<MicReceiverKind, 2> all {MicReceiverKind::g4, MicReceiverKind::ewdx};

QString rawValue(MicReceiverKind kind);
std::optional<MicReceiverKind> fromRawValue(const QString& raw);
QString title(MicReceiverKind kind);

} // namespace MicReceiverKinds

struct MicReceiver {
    QUuid id;
    MicReceiverKind kind = MicReceiverKind::g4;
    QString host;
    QString label;

    // The canonical upper-case form that prefixes channel keys.
    QString key() const;

    QJsonObject toJson() const;
    // Every key is required; an unknown kind or an id that is no UUID fails.
    static std::optional<MicReceiver> fromJson(const QJsonObject& object);

    // The stored list: one undecodable element leaves nothing.
    static QByteArray encodeList(const std::vector<MicReceiver>& receivers);
    static std::optional<std::vector<MicReceiver>> decodeList(const QByteArray& data);

    friend bool operator==(const MicReceiver&, const MicReceiver&) = default;
};

// The canonical upper-case string of a receiver id.
QString micReceiverKey(const QUuid& id);

} // namespace ostrel
