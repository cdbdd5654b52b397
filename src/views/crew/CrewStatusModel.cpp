#include "views/crew/CrewStatusModel.h"

namespace ostrel {

CrewStatusModel::CrewStatusModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

QString CrewStatusModel::text(const CrewLink::Status& status, bool isReceiving)
{
    switch (status.kind) {
    case CrewLink::StatusKind::sharing:
        if (status.secondaries == 0) return QStringLiteral("Waiting for secondaries");
        return QStringLiteral("Sharing with ") + QString::number(status.secondaries);
    case CrewLink::StatusKind::connecting:
        return QStringLiteral("Connecting to ") + status.peer;
    case CrewLink::StatusKind::connected:
        if (isReceiving) return QStringLiteral("Connected to ") + status.peer;
        return status.peer + QStringLiteral(" not responding");
    case CrewLink::StatusKind::searching:
        return QStringLiteral("Looking for primary");
    case CrewLink::StatusKind::off:
        return QStringLiteral("Off");
    }
    return QStringLiteral("Off");
}

Theme::Role CrewStatusModel::colorRole(const CrewLink::Status& status, bool isReceiving)
{
    switch (status.kind) {
    case CrewLink::StatusKind::sharing:
        return status.secondaries == 0 ? Theme::Role::orange : Theme::Role::green;
    case CrewLink::StatusKind::connecting:
    case CrewLink::StatusKind::searching:
        return Theme::Role::orange;
    case CrewLink::StatusKind::connected:
        return isReceiving ? Theme::Role::green : Theme::Role::red;
    case CrewLink::StatusKind::off:
        return Theme::Role::secondary;
    }
    return Theme::Role::secondary;
}

void CrewStatusModel::attach()
{
    watch(crew_);
    if (!crew_) return;
    const auto update = [this] { refresh(); };
    track(connect(crew_, &CrewLink::statusChanged, this, update));
    track(connect(crew_, &CrewLink::isReceivingChanged, this, update));
    track(connect(crew_, &CrewLink::problemChanged, this, update));
}

void CrewStatusModel::refresh()
{
    const CrewLink::Status status = crew_ ? crew_->status() : CrewLink::Status {};
    const bool receiving = crew_ && crew_->isReceiving();
    const QString newText = text(status, receiving);
    const Theme::Role newRole = colorRole(status, receiving);
    const QString newProblem = crew_ ? crew_->problem() : QString();
    if (newText == text_ && newRole == colorRole_ && newProblem == problem_) return;
    text_ = newText;
    colorRole_ = newRole;
    problem_ = newProblem;
    emit statusChanged();
}

} // namespace ostrel
