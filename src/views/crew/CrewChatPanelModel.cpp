#include "views/crew/CrewChatPanelModel.h"

namespace ostrel {

CrewChatPanelModel::CrewChatPanelModel(QObject* parent) : ViewModel(parent) { }

void CrewChatPanelModel::setCueLabel(const QString& value)
{
    if (value == cueLabel_) return;
    cueLabel_ = value;
    emit cueLabelChanged();
}

void CrewChatPanelModel::setDraft(const QString& value)
{
    if (value == draft_) return;
    draft_ = value;
    emit draftChanged();
}

void CrewChatPanelModel::setSendsUrgent(bool value)
{
    if (value == sendsUrgent_) return;
    sendsUrgent_ = value;
    emit sendsUrgentChanged();
}

QString CrewChatPanelModel::urgentHelp() const
{
    return sendsUrgent_ ? QStringLiteral("Sending as urgent: flashes every screen")
                        : QStringLiteral("Send as urgent");
}

int CrewChatPanelModel::urgentColorRole() const
{
    return static_cast<int>(sendsUrgent_ ? Theme::Role::red : Theme::Role::secondary);
}

void CrewChatPanelModel::send()
{
    if (crew_) {
        const std::optional<QString> cue
            = cueLabel_.isEmpty() ? std::nullopt : std::optional<QString>(cueLabel_);
        crew_->send(draft_, sendsUrgent_, std::nullopt, cue);
    }
    setDraft(QString());
    setSendsUrgent(false);
}

void CrewChatPanelModel::setShown(bool shown)
{
    if (crew_) crew_->setChatVisible(shown);
}

} // namespace ostrel
