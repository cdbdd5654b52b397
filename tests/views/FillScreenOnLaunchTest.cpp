// The main window fills the usable screen once at launch, without a window manager's help.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWindow>

#include "app/FillScreenOnLaunch.h"

using namespace ostrel;

namespace {

QRect usableScreen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

// The frame, where the platform draws one, is part of what fills the screen.
bool waitForFrame(const QWindow& window, const QRect& geometry)
{
    return QTest::qWaitFor([&] { return window.frameGeometry() == geometry; }, 2000);
}

} // namespace

TEST(FillScreenOnLaunch, AWindowAtItsDefaultSizeInTheCornerFillsTheUsableScreenWhenShown)
{
    QWindow window;
    window.setGeometry(0, 0, 480, 780);
    auto* watcher = new FillScreenOnLaunch(window);
    EXPECT_FALSE(watcher->didFillScreen());
    window.show();
    EXPECT_TRUE(watcher->didFillScreen());
    EXPECT_TRUE(waitForFrame(window, usableScreen()));
}

TEST(FillScreenOnLaunch, AFullScreenWindowLeavesFullScreenAndFillsTheUsableScreen)
{
    QWindow window;
    window.setGeometry(10, 10, 300, 200);
    new FillScreenOnLaunch(window);
    window.showFullScreen();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !(window.windowStates() & Qt::WindowFullScreen); }, 2000));
    EXPECT_TRUE(waitForFrame(window, usableScreen()));
}

TEST(FillScreenOnLaunch, ShowingTheWindowAgainKeepsTheSizeTheOperatorChose)
{
    QWindow window;
    window.setGeometry(0, 0, 480, 780);
    new FillScreenOnLaunch(window);
    window.show();
    ASSERT_TRUE(waitForFrame(window, usableScreen()));
    window.hide();
    const QRect chosen(20, 30, 400, 500);
    window.setGeometry(chosen);
    window.show();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.geometry(), chosen);
    EXPECT_NE(window.frameGeometry(), usableScreen());
}

TEST(FillScreenOnLaunch, AWatcherMadeForAWindowAlreadyShownFillsItToo)
{
    QWindow window;
    window.setGeometry(0, 0, 480, 780);
    window.show();
    new FillScreenOnLaunch(window);
    EXPECT_TRUE(waitForFrame(window, usableScreen()));
}
