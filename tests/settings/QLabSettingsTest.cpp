#include <gtest/gtest.h>

#include "SettingsFixture.h"
#include "qlab/QLabSettings.h"

using namespace ostrel;

namespace {

class QLabSettingsTest : public testsupport::SettingsFixture { };

} // namespace

TEST_F(QLabSettingsTest, TimecodeRateOutsideZeroToSevenReadsAsTwentyFive)
{
    for (int raw : {8, -1}) {
        storeRaw("timecodeFallbackRate", raw);
        EXPECT_EQ(QLabSettings(open()).timecodeFallbackRate(), TimecodeRate::fps25) << raw;
    }
    storeRaw("timecodeFallbackRate", 7);
    EXPECT_EQ(QLabSettings(open()).timecodeFallbackRate(), TimecodeRate::fps2997Drop);
}

TEST_F(QLabSettingsTest, AssigningTheSameValueTwiceWritesTwiceAndNotifiesOnce)
{
    SettingsStore& store = open();
    QLabSettings qlab(store);
    int notified = 0;
    QObject::connect(&qlab, &QLabSettings::hostChanged, [&] { ++notified; });
    qlab.setHost("10.0.0.5");
    store.flush();
    EXPECT_EQ(onDisk("qlabHost").toString(), "10.0.0.5");
    // Someone else changes the store; a repeated assignment writes again regardless.
    storeRaw("qlabHost", "elsewhere");
    qlab.setHost("10.0.0.5");
    EXPECT_TRUE(store.hasPendingWrites());
    store.flush();
    EXPECT_EQ(onDisk("qlabHost").toString(), "10.0.0.5");
    EXPECT_EQ(notified, 1);
}

TEST_F(QLabSettingsTest, ThePortIsStoredAsAssignedWithoutAClamp)
{
    SettingsStore& store = open();
    QLabSettings qlab(store);
    qlab.setPort(70000);
    EXPECT_EQ(qlab.port(), 70000);
    store.flush();
    EXPECT_EQ(QLabSettings(open()).port(), 70000);
}
