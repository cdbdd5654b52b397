#include <QSignalSpy>

#include "ViewSources.h"
#include "views/main/AudioNoticeModel.h"

using namespace ostrel;
using Action = AudioNoticeModel::Action;
using Status = AudioInput::Status;

class AudioNoticeModelTest : public testsupport::ViewSourcesFixture { };

TEST_F(AudioNoticeModelTest, EachProblemOfTheLiveInputHasItsSentenceAndAction)
{
    const auto denied = AudioNoticeModel::notice(AppModel::Mode::live, Status::permissionDenied);
    ASSERT_TRUE(denied);
    EXPECT_EQ(
        denied->message, "Ostrel Live needs access to your microphone to measure sound level.");
    EXPECT_EQ(denied->actionTitle, "Open Sound Settings");
    EXPECT_EQ(denied->action, Action::openSoundSettings);

    const auto unavailable
        = AudioNoticeModel::notice(AppModel::Mode::live, Status::deviceUnavailable);
    ASSERT_TRUE(unavailable);
    EXPECT_EQ(unavailable->message, "Your selected audio input isn't available.");
    EXPECT_EQ(unavailable->actionTitle, "Choose Input");
    EXPECT_EQ(unavailable->action, Action::chooseInput);

    const auto failed = AudioNoticeModel::notice(AppModel::Mode::live, Status::failed);
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->message, "The audio input couldn't be started.");
    EXPECT_EQ(failed->actionTitle, "Try Again");
    EXPECT_EQ(failed->action, Action::retry);
}

TEST_F(AudioNoticeModelTest, ARunningOrStoppedInputNeedsNoNotice)
{
    EXPECT_FALSE(AudioNoticeModel::notice(AppModel::Mode::live, Status::running));
    EXPECT_FALSE(AudioNoticeModel::notice(AppModel::Mode::live, Status::stopped));
}

TEST_F(AudioNoticeModelTest, DemoAndInertStationsNeverShowANotice)
{
    for (auto mode : {AppModel::Mode::demo, AppModel::Mode::inert}) {
        for (auto status : {Status::stopped, Status::running, Status::permissionDenied,
                 Status::deviceUnavailable, Status::failed}) {
            EXPECT_FALSE(AudioNoticeModel::notice(mode, status));
        }
    }
}

TEST_F(AudioNoticeModelTest, AMachineWithoutInputsSaysSoWithoutADeadChooseInputButton)
{
    auto model = make(AppModel::Mode::live, false);
    AudioNoticeModel notice;
    show(notice, *model);
    EXPECT_FALSE(notice.hasNotice());
    QSignalSpy changes(&notice, &AudioNoticeModel::noticeChanged);
    // The station starts its live input once it has started itself.
    model->input().start();
    settle();
    ASSERT_EQ(model->audio().status(), Status::deviceUnavailable);
    EXPECT_TRUE(notice.hasNotice());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(notice.message(), "Your selected audio input isn't available.");
    // The link opens the input picker.
    EXPECT_EQ(notice.actionTitle(), "Choose Input");
    EXPECT_TRUE(notice.showsAction());
    EXPECT_TRUE(notice.actionIsLink());
    QSignalSpy picker(&notice, &AudioNoticeModel::inputPickerRequested);
    notice.perform();
    EXPECT_EQ(picker.count(), 1);
}

TEST_F(AudioNoticeModelTest, ADemoStationWithAFailedInputShowsNothing)
{
    auto model = make(AppModel::Mode::demo, false);
    AudioNoticeModel notice;
    show(notice, *model);
    model->audio().start(QString(), 0);
    ASSERT_EQ(model->audio().status(), Status::deviceUnavailable);
    EXPECT_FALSE(notice.hasNotice());
}

TEST_F(AudioNoticeModelTest, TryAgainRestartsTheInput)
{
    auto model = make(AppModel::Mode::live);
    backend->startError = QStringLiteral("busy");
    AudioNoticeModel notice;
    show(notice, *model);
    // The station starts its live input once it has started itself.
    model->input().start();
    settle();
    ASSERT_EQ(model->audio().status(), Status::failed);
    ASSERT_EQ(notice.action(), Action::retry);
    EXPECT_EQ(notice.actionTitle(), "Try Again");

    backend->startError.reset();
    notice.perform();
    EXPECT_EQ(model->audio().status(), Status::running);
    EXPECT_FALSE(notice.hasNotice());
    EXPECT_EQ(backend->starts, 2);
}

TEST_F(AudioNoticeModelTest, SoundSettingsButtonHidesWithoutATool)
{
    auto model = make(AppModel::Mode::live);
    backend->permission = false;
    AudioNoticeModel notice;
    notice.setProgramFinder([](const QString&) { return QString(); });
    show(notice, *model);
    // The station starts its live input once it has started itself.
    model->input().start();
    settle();
    ASSERT_EQ(notice.action(), Action::openSoundSettings);
    EXPECT_EQ(notice.actionTitle(), "Open Sound Settings");
    EXPECT_FALSE(notice.showsAction());
}

TEST_F(AudioNoticeModelTest, SoundSettingsOpenTheToolThatIsThere)
{
    auto model = make(AppModel::Mode::live);
    backend->permission = false;
    AudioNoticeModel notice;
    notice.setProgramFinder([](const QString& name) {
        return name == "pavucontrol" ? QStringLiteral("/usr/bin/pavucontrol") : QString();
    });
    std::vector<AudioNoticeModel::Command> launched;
    notice.setCommandLauncher([&](const AudioNoticeModel::Command& command) {
        launched.push_back(command);
        return true;
    });
    show(notice, *model);
    // The station starts its live input once it has started itself.
    model->input().start();
    settle();
    ASSERT_TRUE(notice.showsAction());
    notice.perform();
    ASSERT_EQ(launched.size(), 1u);
    EXPECT_EQ(launched[0].program, "/usr/bin/pavucontrol");
    EXPECT_TRUE(launched[0].arguments.isEmpty());
}

TEST_F(AudioNoticeModelTest, TheDesktopsOwnPanelComesFirst)
{
    const auto command = AudioNoticeModel::soundSettingsCommand([](const QString& name) {
        if (name == "pavucontrol") return QStringLiteral("/usr/bin/pavucontrol");
        if (name == "gnome-control-center") return QStringLiteral("/usr/bin/gnome-control-center");
        return QString();
    });
    ASSERT_TRUE(command);
    EXPECT_EQ(command->program, "/usr/bin/gnome-control-center");
    EXPECT_EQ(command->arguments, QStringList {"sound"});
    EXPECT_FALSE(AudioNoticeModel::soundSettingsCommand([](const QString&) { return QString(); }));
}
