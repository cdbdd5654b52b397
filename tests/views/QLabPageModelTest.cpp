#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>

#include "qlab/QLabSettings.h"
#include "qlab/client/QLabClient.h"
#include "settings/SettingsStore.h"
#include "views/main/settings/QLabPageModel.h"

using namespace ostrel;

namespace {

struct QLabStore {
    QTemporaryDir folder;
    QSettings settings {folder.filePath("settings.ini"), QSettings::IniFormat};
    SettingsStore store {settings};
    QLabSettings qlab {store};
};

} // namespace

TEST(QLabPageModel, everyRateIsListedByItsTitle)
{
    const QStringList rates = QLabPageModel::rateOptions();
    ASSERT_EQ(rates.size(), 8);
    QLabStore store;
    QLabPageModel page;
    page.setSettings(&store.qlab);
    EXPECT_EQ(page.rateIndex(), 1);
    page.setRateIndex(7);
    EXPECT_EQ(store.qlab.timecodeFallbackRate(), TimecodeRate::fps2997Drop);
    page.setRateIndex(8);
    EXPECT_EQ(store.qlab.timecodeFallbackRate(), TimecodeRate::fps2997Drop);
}

TEST(QLabPageModel, thePortIsShownWithoutGroupingAndTextThatIsNoNumberIsDropped)
{
    QLabStore store;
    QLabPageModel page;
    page.setSettings(&store.qlab);
    EXPECT_EQ(page.port(), "53000");
    page.setPort(" 53535 ");
    EXPECT_EQ(store.qlab.port(), 53535);
    page.setPort("fifty");
    EXPECT_EQ(store.qlab.port(), 53535);
}

TEST(QLabPageModel, reconnectIsOfferedOnlyWhileMonitoringWithoutAConnection)
{
    QLabStore store;
    QLabClient client;
    QLabPageModel page;
    page.setSettings(&store.qlab);
    page.setQlab(&client);
    EXPECT_NE(client.state(), QLabClientState::connected);
    EXPECT_TRUE(page.showsReconnect());
    page.setMonitors(false);
    EXPECT_FALSE(store.qlab.enabled());
    EXPECT_FALSE(page.showsReconnect());
    EXPECT_TRUE(page.statusText().startsWith("QLab "));
}

TEST(QLabPageModel, hostWorkspaceAndPasscodeAreStoredAsTyped)
{
    QLabStore store;
    QLabPageModel page;
    page.setSettings(&store.qlab);
    page.setHost("qlab.local");
    page.setWorkspace("Hamlet");
    page.setPasscode("4321");
    EXPECT_EQ(store.qlab.host(), "qlab.local");
    EXPECT_EQ(store.qlab.workspace(), "Hamlet");
    EXPECT_EQ(store.qlab.passcode(), "4321");
}
