#include "views/main/AudioNoticeModel.h"

#include <QProcess>
#include <QStandardPaths>

namespace ostrel {

AudioNoticeModel::AudioNoticeModel(QObject* parent)
    : ViewModel(parent),
      find_([](const QString& name) { return QStandardPaths::findExecutable(name); }),
      launch_([](const Command& command) {
          return QProcess::startDetached(command.program, command.arguments);
      })
{
}

std::optional<AudioNoticeModel::Notice> AudioNoticeModel::notice(
    AppModel::Mode mode, AudioInput::Status status)
{
    if (mode != AppModel::Mode::live) return std::nullopt;
    switch (status) {
    case AudioInput::Status::stopped:
    case AudioInput::Status::running:
        return std::nullopt;
    case AudioInput::Status::permissionDenied:
        return Notice {
            QStringLiteral("Ostrel Live needs access to your microphone to measure sound level."),
            QStringLiteral("Open Sound Settings"), Action::openSoundSettings};
    case AudioInput::Status::deviceUnavailable:
        return Notice {QStringLiteral("Your selected audio input isn't available."),
            QStringLiteral("Choose Input"), Action::chooseInput};
    case AudioInput::Status::failed:
        return Notice {QStringLiteral("The audio input couldn't be started."),
            QStringLiteral("Try Again"), Action::retry};
    }
    return std::nullopt;
}

std::optional<AudioNoticeModel::Command> AudioNoticeModel::soundSettingsCommand(
    const ProgramFinder& find)
{
    // The desktop's own panel first, then the mixers that work on any desktop.
    const Command candidates[] = {
        {QStringLiteral("gnome-control-center"), {QStringLiteral("sound")}},
        {QStringLiteral("systemsettings"), {QStringLiteral("kcm_pulseaudio")}},
        {QStringLiteral("pavucontrol"), {}},
        {QStringLiteral("pavucontrol-qt"), {}},
    };
    for (const auto& candidate : candidates) {
        const QString path = find(candidate.program);
        if (!path.isEmpty()) return Command {path, candidate.arguments};
    }
    return std::nullopt;
}

void AudioNoticeModel::setProgramFinder(ProgramFinder find)
{
    find_ = std::move(find);
    emit noticeChanged();
}

void AudioNoticeModel::setCommandLauncher(std::function<bool(const Command&)> launch)
{
    launch_ = std::move(launch);
}

bool AudioNoticeModel::showsAction() const
{
    if (!notice_) return false;
    switch (notice_->action) {
    case Action::openSoundSettings:
        return soundSettingsCommand(find_).has_value();
    case Action::none:
    case Action::chooseInput:
    case Action::retry:
        break;
    }
    return true;
}

void AudioNoticeModel::perform()
{
    switch (action()) {
    case Action::none:
        return;
    case Action::openSoundSettings:
        if (const auto command = soundSettingsCommand(find_)) launch_(*command);
        return;
    case Action::chooseInput:
        emit inputPickerRequested();
        return;
    case Action::retry:
        if (input_ && mode_ == AppModel::Mode::live) input_->restart();
        return;
    }
}

void AudioNoticeModel::attach()
{
    watch(input_);
    if (input_)
        track(connect(&input_->audio(), &AudioInput::statusChanged, this, [this] { refresh(); }));
}

void AudioNoticeModel::setMode(AppModel::Mode value)
{
    if (value == mode_) return;
    mode_ = value;
    emit modeChanged();
    refresh();
}

void AudioNoticeModel::refresh()
{
    const auto next = input_ ? notice(mode_, input_->audio().status()) : std::nullopt;
    if (next == notice_) return;
    notice_ = next;
    emit noticeChanged();
}

} // namespace ostrel
