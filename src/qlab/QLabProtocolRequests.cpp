#include "qlab/QLabProtocol.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace ostrel::QLabProtocol {

namespace {

std::string workspaceAddress(const QString& workspace, const QString& rest)
{
    return QStringLiteral("/workspace/%1/%2").arg(workspace, rest).toStdString();
}

} // namespace

OSCMessage workspaces()
{
    return OSCMessage("/workspaces");
}

OSCMessage connect(const QString& workspace, const QString& passcode)
{
    std::vector<OSCArgument> arguments;
    if (!passcode.isEmpty()) arguments.push_back(OSCArgument::string(passcode.toStdString()));
    return OSCMessage(workspaceAddress(workspace, "connect"), std::move(arguments));
}

OSCMessage subscribeToUpdates()
{
    return OSCMessage("/updates", {OSCArgument::int32(1)});
}

OSCMessage listen(const QString& workspace, const QString& event)
{
    return OSCMessage(workspaceAddress(workspace, "listen/" + event));
}

OSCMessage runningCues(const QString& workspace)
{
    return OSCMessage(workspaceAddress(workspace, "runningOrPausedCues/shallow"));
}

OSCMessage cueValues(const QString& workspace, const QString& cueID, const QStringList& keys)
{
    // Encoding a list of strings cannot fail here, so the "[]" fallback is never needed.
    const QByteArray json
        = QJsonDocument(QJsonArray::fromStringList(keys)).toJson(QJsonDocument::Compact);
    return OSCMessage(workspaceAddress(workspace, "cue_id/" + cueID + "/valuesForKeys"),
        {OSCArgument::string(json.toStdString())});
}

OSCMessage cueProperty(const QString& workspace, const QString& cueID, const QString& key)
{
    return OSCMessage(workspaceAddress(workspace, "cue_id/" + cueID + "/" + key));
}

OSCMessage thump(const QString& workspace)
{
    return OSCMessage(workspaceAddress(workspace, "thump"));
}

OSCMessage disconnect(const QString& workspace)
{
    return OSCMessage(workspaceAddress(workspace, "disconnect"));
}

} // namespace ostrel::QLabProtocol
