#include "views/crew/CrewChatButtonModel.h"

namespace ostrel {

CrewChatButtonModel::CrewChatButtonModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

QString CrewChatButtonModel::badgeText(int unread)
{
    return unread >= 100 ? QStringLiteral("99+") : QString::number(unread);
}

QString CrewChatButtonModel::accessibleValue() const
{
    return unread_ > 0 ? QString::number(unread_) + QStringLiteral(" unread") : QString();
}

void CrewChatButtonModel::attach()
{
    watch(crew_);
    if (!crew_) return;
    const auto update = [this] { refresh(); };
    track(connect(crew_, &CrewLink::roleChanged, this, update));
    track(connect(crew_, &CrewLink::unreadCountChanged, this, update));
}

void CrewChatButtonModel::refresh()
{
    const bool visible = crew_ && crew_->isInCrew();
    if (visible != isVisible_) {
        isVisible_ = visible;
        emit isVisibleChanged();
    }
    const int unread = crew_ ? crew_->unreadCount() : 0;
    if (unread != unread_) {
        unread_ = unread;
        emit unreadChanged();
    }
}

} // namespace ostrel
