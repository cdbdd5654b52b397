#include "views/crew/CrewFrameModel.h"

#include <algorithm>

namespace ostrel {

CrewFrameModel::CrewFrameModel(QObject* parent) : ViewModel(parent) { }

void CrewFrameModel::setShowsChat(bool value)
{
    if (value == showsChat_) return;
    const bool presented = presentsChat();
    showsChat_ = value;
    emit showsChatChanged();
    if (presentsChat() != presented) emit presentsChatChanged();
}

double CrewFrameModel::chatWidth(double windowWidth) const
{
    constexpr double monitorMinimumWidth = 480.0;
    return std::clamp(windowWidth - monitorMinimumWidth, chatMinimumWidth(), chatIdealWidth());
}

void CrewFrameModel::toggleChat()
{
    if (isInCrew_) setShowsChat(!showsChat_);
}

void CrewFrameModel::attach()
{
    watch(appModel_);
    if (!appModel_) return;
    const auto update = [this] { refresh(); };
    track(connect(&appModel_->crew(), &CrewLink::roleChanged, this, update));
    track(connect(appModel_, &AppModel::isSecondaryChanged, this, update));
    track(connect(appModel_, &AppModel::isMirrorLiveChanged, this, update));
}

void CrewFrameModel::refresh()
{
    AppModel* model = appModel_;
    const bool inCrew = model && model->crew().isInCrew();
    const bool secondary = model && model->isSecondary();
    const bool live = !model || model->isMirrorLive();
    const bool presented = presentsChat();
    if (inCrew != isInCrew_ || secondary != isSecondary_) {
        isInCrew_ = inCrew;
        isSecondary_ = secondary;
        emit roleChanged();
    }
    if (presentsChat() != presented) emit presentsChatChanged();
    if (live != isLive_) {
        isLive_ = live;
        emit isLiveChanged();
    }
}

} // namespace ostrel
