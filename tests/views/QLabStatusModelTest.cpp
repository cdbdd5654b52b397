#include <QSignalSpy>

#include "ViewSources.h"
#include "views/components/Theme.h"
#include "views/qlab/QLabStatusModel.h"

using namespace ostrel;

class QLabStatusModelTest : public testsupport::ViewSourcesFixture { };

namespace {

int role(Theme::Role value)
{
    return static_cast<int>(value);
}

} // namespace

TEST_F(QLabStatusModelTest, EachStateHasItsWordsAndDotColour)
{
    using Look = QLabStatusModel::Look;
    EXPECT_EQ(QLabStatusModel::text(QLabClientState::off), "QLab Off");
    EXPECT_EQ(
        QLabStatusModel::look(QLabClientState::off), (Look {role(Theme::Role::secondary), 0.5}));
    EXPECT_EQ(QLabStatusModel::text(QLabClientState::connecting), "QLab Connecting…");
    EXPECT_EQ(QLabStatusModel::look(QLabClientState::connecting),
        (Look {role(Theme::Role::yellow), 1.0}));
    EXPECT_EQ(QLabStatusModel::text(QLabClientState::connected), "QLab Connected");
    EXPECT_EQ(
        QLabStatusModel::look(QLabClientState::connected), (Look {role(Theme::Role::green), 1.0}));
    EXPECT_EQ(QLabStatusModel::text(QLabClientState::noWorkspace), "QLab No Workspace Open");
    EXPECT_EQ(QLabStatusModel::text(QLabClientState::passcodeRequired), "QLab Passcode Required");
    EXPECT_EQ(QLabStatusModel::text(QLabClientState::disconnected), "QLab Not Connected");
    for (auto state : {QLabClientState::noWorkspace, QLabClientState::passcodeRequired,
             QLabClientState::disconnected})
        EXPECT_EQ(QLabStatusModel::look(state), (Look {role(Theme::Role::orange), 1.0}));
}

TEST_F(QLabStatusModelTest, TheWorkspaceIsTheHelpTextOnlyWhenKnown)
{
    EXPECT_EQ(QLabStatusModel::helpText(std::nullopt), "");
    EXPECT_EQ(QLabStatusModel::helpText(QStringLiteral("Evening Show")), "Workspace: Evening Show");
}

TEST_F(QLabStatusModelTest, FollowsTheClientOfTheModel)
{
    auto model = make(AppModel::Mode::inert);
    QLabStatusModel status;
    show(status, *model);
    EXPECT_EQ(status.text(), "QLab Not Connected");
    EXPECT_FALSE(status.hasHelp());
    EXPECT_EQ(status.spacing(), 6.0);

    QSignalSpy changes(&status, &QLabStatusModel::statusChanged);
    model->qlab().simulate(QLabClientState::connected, QStringLiteral("Evening Show"), {});
    EXPECT_EQ(status.text(), "QLab Connected");
    EXPECT_EQ(status.dotColorRole(), role(Theme::Role::green));
    EXPECT_EQ(status.helpText(), "Workspace: Evening Show");
    EXPECT_TRUE(status.hasHelp());
    EXPECT_GE(changes.count(), 1);

    model->qlab().simulate(QLabClientState::off, std::nullopt, {});
    EXPECT_EQ(status.text(), "QLab Off");
    EXPECT_EQ(status.dotOpacity(), 0.5);
    EXPECT_FALSE(status.hasHelp());
}

TEST_F(QLabStatusModelTest, WithoutAModelItReadsNotConnected)
{
    QLabStatusModel status;
    EXPECT_EQ(status.text(), "QLab Not Connected");
    auto model = make(AppModel::Mode::inert);
    show(status, *model);
    model->qlab().simulate(QLabClientState::connected, QStringLiteral("Evening Show"), {});
    model.reset();
    EXPECT_EQ(status.text(), "QLab Not Connected");
}
