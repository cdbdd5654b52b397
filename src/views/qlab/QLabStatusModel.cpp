#include "views/qlab/QLabStatusModel.h"

#include "views/components/Theme.h"

namespace ostrel {

QLabStatusModel::QLabStatusModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

QString QLabStatusModel::text(QLabClientState state)
{
    return QStringLiteral("QLab ") + QString::fromUtf8(QLabClientStates::title(state));
}

QLabStatusModel::Look QLabStatusModel::look(QLabClientState state)
{
    const auto role = [](Theme::Role value) { return static_cast<int>(value); };
    switch (state) {
    case QLabClientState::off:
        return {role(Theme::Role::secondary), 0.5};
    case QLabClientState::connecting:
        return {role(Theme::Role::yellow), 1.0};
    case QLabClientState::connected:
        return {role(Theme::Role::green), 1.0};
    case QLabClientState::noWorkspace:
    case QLabClientState::passcodeRequired:
    case QLabClientState::disconnected:
        return {role(Theme::Role::orange), 1.0};
    }
    return {role(Theme::Role::orange), 1.0};
}

QString QLabStatusModel::helpText(const std::optional<QString>& workspaceName)
{
    if (!workspaceName) return {};
    return QStringLiteral("Workspace: ") + *workspaceName;
}

void QLabStatusModel::attach()
{
    watch(qlab_);
    if (!qlab_) return;
    track(connect(qlab_, &QLabClient::stateChanged, this, &QLabStatusModel::refresh));
    track(connect(qlab_, &QLabClient::workspaceNameChanged, this, &QLabStatusModel::refresh));
}

void QLabStatusModel::refresh()
{
    // Without a client the link has not been configured, which reads as not connected.
    const QLabClientState state = qlab_ ? qlab_->state() : QLabClientState::disconnected;
    const auto workspace = qlab_ ? qlab_->workspaceName() : std::nullopt;
    const QString newText = text(state);
    const Look newLook = look(state);
    const QString newHelp = helpText(workspace);
    if (newText == text_ && newLook == look_ && newHelp == helpText_) return;
    text_ = newText;
    look_ = newLook;
    helpText_ = newHelp;
    emit statusChanged();
}

} // namespace ostrel
