#include <QSignalSpy>

#include "StationFixture.h"
#include "views/main/ContentModel.h"

using namespace ostrel;

class ContentModelTest : public testsupport::StationFixture { };

TEST_F(ContentModelTest, TheAlertFollowsTheErrorMessageAndDismissingClearsIt)
{
    auto model = make(AppModel::Mode::inert);
    ContentModel content;
    content.setAppModel(model.get());
    EXPECT_FALSE(content.showsError());
    EXPECT_EQ(content.errorTitle(), "Something Went Wrong");

    model->setErrorMessage(QStringLiteral("The session couldn't be saved."));
    EXPECT_TRUE(content.showsError());
    EXPECT_EQ(content.errorText(), "The session couldn't be saved.");

    content.dismissError();
    EXPECT_FALSE(model->hasError());
    EXPECT_FALSE(content.showsError());

    // The same failure later alerts again.
    QSignalSpy changes(&content, &ContentModel::errorChanged);
    model->setErrorMessage(QStringLiteral("The session couldn't be saved."));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(content.showsError());
}

TEST_F(ContentModelTest, AppearanceDecidesLightOrDark)
{
    auto model = make(AppModel::Mode::inert);
    bool systemDark = false;
    ContentModel content;
    content.setSystemIsDark([&] { return systemDark; });
    content.setAppModel(model.get());
    EXPECT_FALSE(content.isDark());

    model->settings().display().setAppearance(AppearanceMode::dark);
    EXPECT_TRUE(content.isDark());
    systemDark = true;
    model->settings().display().setAppearance(AppearanceMode::light);
    EXPECT_FALSE(content.isDark());
    model->settings().display().setAppearance(AppearanceMode::system);
    EXPECT_TRUE(content.isDark());
}

TEST_F(ContentModelTest, TheWindowStartsTheModelAsItAppears)
{
    auto model = make(AppModel::Mode::inert);
    ContentModel content;
    content.setAppModel(model.get());
    ASSERT_FALSE(model->hasStarted());
    content.start();
    EXPECT_TRUE(model->hasStarted());
    EXPECT_EQ(content.title(), "Ostrel Live");
    EXPECT_EQ(content.minimumWidth(), 480);
    EXPECT_EQ(content.minimumHeight(), 600);
    EXPECT_EQ(content.defaultWidth(), 480);
    EXPECT_EQ(content.defaultHeight(), 780);
}

TEST_F(ContentModelTest, ResetClearsPeakAndLeq)
{
    auto model = make(AppModel::Mode::inert);
    ContentModel content;
    content.setAppModel(model.get());
    feed(*model, 80.0, 1.0);
    ASSERT_TRUE(model->meter().statistics().leq());
    content.resetStatistics();
    EXPECT_FALSE(model->meter().statistics().leq());
}
