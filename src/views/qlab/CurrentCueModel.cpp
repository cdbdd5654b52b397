#include "views/qlab/CurrentCueModel.h"

#include <chrono>

#include "views/qlab/CueText.h"

namespace ostrel {

CurrentCueModel::CurrentCueModel(QObject* parent)
    : ViewModel(parent), clock_([] { return std::chrono::system_clock::now(); })
{
    redraw_.setInterval(defaultRedrawMs);
    connect(&redraw_, &QTimer::timeout, this, &CurrentCueModel::updateTiming);
    refresh();
}

QString CurrentCueModel::unavailableText(QLabClientState state)
{
    switch (state) {
    case QLabClientState::off:
        return QStringLiteral("QLab monitoring is off.");
    case QLabClientState::connecting:
        return QStringLiteral("Connecting to QLab\u2026");
    case QLabClientState::noWorkspace:
        return QStringLiteral("Open a workspace in QLab to see cues.");
    case QLabClientState::passcodeRequired:
        return QStringLiteral("QLab needs a passcode for this workspace.");
    case QLabClientState::disconnected:
        return QStringLiteral("QLab isn't currently connected.");
    case QLabClientState::connected:
        return {};
    }
    return {};
}

CurrentCueModel::Action CurrentCueModel::unavailableAction(QLabClientState state)
{
    switch (state) {
    case QLabClientState::off:
    case QLabClientState::passcodeRequired:
        return Action::openSettings;
    case QLabClientState::noWorkspace:
    case QLabClientState::disconnected:
        return Action::reconnect;
    case QLabClientState::connecting:
    case QLabClientState::connected:
        return Action::none;
    }
    return Action::none;
}

void CurrentCueModel::setClock(std::function<Date()> clock)
{
    clock_ = std::move(clock);
    updateTiming();
}

QString CurrentCueModel::unavailableAction() const
{
    switch (unavailableAction(state_)) {
    case Action::reconnect:
        return QStringLiteral("Reconnect");
    case Action::openSettings:
        return QStringLiteral("QLab Settings\u2026");
    case Action::none:
        return {};
    }
    return {};
}

bool CurrentCueModel::hasUnavailableAction() const
{
    // Without a settings window on the station the settings button would lead nowhere, so
    // only "Reconnect" is offered until that window exists.
    return unavailableAction(state_) == Action::reconnect;
}

void CurrentCueModel::performUnavailableAction()
{
    switch (unavailableAction(state_)) {
    case Action::reconnect:
        if (qlab_) qlab_->reconnect();
        break;
    case Action::openSettings:
        emit settingsRequested();
        break;
    case Action::none:
        break;
    }
}

QString CurrentCueModel::othersText() const
{
    return others_.empty() ? QString() : QStringLiteral("Also playing: ") + CueText::list(others_);
}

QString CurrentCueModel::othersCountText() const
{
    return QStringLiteral("%1 more playing").arg(others_.size());
}

void CurrentCueModel::attach()
{
    watch(qlab_);
    if (!qlab_) return;
    track(connect(qlab_, &QLabClient::stateChanged, this, &CurrentCueModel::refresh));
    track(connect(qlab_, &QLabClient::runningCuesChanged, this, &CurrentCueModel::refresh));
}

void CurrentCueModel::refresh()
{
    state_ = qlab_ ? qlab_->state() : QLabClientState::disconnected;
    cue_.reset();
    others_.clear();
    if (qlab_ && state_ == QLabClientState::connected && !qlab_->runningCues().empty()) {
        const auto& cues = qlab_->runningCues();
        cue_ = cues.front();
        others_.assign(cues.begin() + 1, cues.end());
    }
    emit cueChanged();
    // Times move only while a cue is there to time.
    if (cue_ && !redraw_.isActive()) redraw_.start();
    if (!cue_) redraw_.stop();
    updateTiming();
}

void CurrentCueModel::updateTiming()
{
    QString playing;
    QString elapsed;
    QString remaining;
    if (cue_) {
        const Date now = clock_();
        playing = cue_->isPaused ? QStringLiteral("Paused") : QStringLiteral("Playing");
        elapsed = CueText::duration(cue_->elapsed(now));
        if (const auto left = cue_->remaining(now)) remaining = CueText::duration(*left);
    }
    if (playing == playingText_ && elapsed == elapsedText_ && remaining == remainingText_) return;
    playingText_ = playing;
    elapsedText_ = elapsed;
    remainingText_ = remaining;
    emit timingChanged();
}

} // namespace ostrel
