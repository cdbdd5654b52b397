#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

#include "ReplaySamples.h"
#include "replay/SessionPlayer.h"

using namespace ostrel;
using namespace ostrel::replay_test;

// The overview as the station builds it: on the thread pool, stored by the main event loop.
TEST(SessionPlayerBackground, OverviewIsBuiltOffTheMainThreadAndStoredByTheEventLoop)
{
    int argc = 1;
    char name[] = "replay_tests";
    char* argv[] = {name, nullptr};
    QCoreApplication application(argc, argv);
    SessionPlayer::Options options;
    options.runsTicker = false;
    SessionPlayer player(session(), frames(5000), nullptr, options);
    // Not built on the spot: the player is ready before its overview.
    EXPECT_FALSE(player.hasOverview());
    const QDeadlineTimer deadline(10'000);
    while (!player.hasOverview() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    ASSERT_TRUE(player.hasOverview());
    EXPECT_EQ(player.overview()->columns, 1600);
    EXPECT_EQ(player.overview()->checkpoints.size(), 9U);
}
