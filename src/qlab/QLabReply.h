#pragma once

// QLab's answer to one request: which request it answers, whether QLab did it, and what it sent
// back, of whatever shape that request returns.
#include <optional>

#include <QJsonValue>
#include <QString>

namespace ostrel {

struct QLabReply {
    QString address; // the request's address, without "/reply"
    std::optional<QString> workspaceID;
    QString status;
    std::optional<QJsonValue> data; // a JSON null that QLab sent is kept, as present

    bool isOK() const { return status == QLatin1String("ok"); }

    bool operator==(const QLabReply&) const = default;
};

} // namespace ostrel
