#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <cmath>

#include "dante/DanteSettings.h"
#include "dante/monitor/DanteMonitor.h"
#include "qlab/client/QLabClient.h"
#include "settings/SettingsStore.h"
#include "station/DanteWatch.h"
#include "views/components/Theme.h"
#include "views/dante/DanteDevicesModel.h"
#include "views/dante/DanteStatusModel.h"
#include "views/dante/DanteWidgetModel.h"
#include "views/dante/DropoutFlashModel.h"
#include "views/dante/DropoutLogModel.h"
#include "views/dante/FlashPulses.h"
#include "views/main/SideColumnModel.h"

using namespace ostrel;

namespace {

const Date start = Date {} + std::chrono::hours(24 * 365 * 56);

Date at(double seconds)
{
    return addingSeconds(start, seconds);
}

int role(Theme::Role value)
{
    return static_cast<int>(value);
}

void settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

// A monitor fed by hand, as the demo and a secondary feed it, and the Dante settings.
class DanteViewsFixture : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QSettings file {folder.filePath("settings.ini"), QSettings::IniFormat};
    SettingsStore store {file};
    DanteSettings settings {store};
    DanteMonitor monitor;
    DanteRoster roster;
    double now = 100.0;

    void seen(std::initializer_list<const char*> names)
    {
        for (const char* name : names)
            roster.seen(name, {{"model", "DX168"}}, at(0));
        publish();
    }
    void lost(std::initializer_list<const char*> names)
    {
        for (const char* name : names)
            roster.lost(name, at(1));
        publish();
    }
    void publish()
    {
        monitor.simulate(roster);
        settle();
    }
    void attach(DropoutFlashModel& flash)
    {
        flash.setClock([this] { return now; });
        flash.setDante(&monitor);
        flash.setSettings(&settings);
    }
};

} // namespace

TEST(FlashPulses, ANormalFlashIsThreeOneSecondPulsesAndReducedMotionOneLongSoftOne)
{
    EXPECT_EQ(FlashPulses::count(false), 3);
    EXPECT_DOUBLE_EQ(FlashPulses::duration(false), 3.0);
    EXPECT_EQ(FlashPulses::count(true), 1);
    EXPECT_DOUBLE_EQ(FlashPulses::duration(true), 2.5);
    for (double pulse : {0.0, 1.0, 2.0}) {
        EXPECT_DOUBLE_EQ(FlashPulses::opacityAt(pulse + 0.2, false), 0.6) << pulse;
        EXPECT_DOUBLE_EQ(FlashPulses::opacityAt(pulse + 0.8, false), 0.0) << pulse;
        EXPECT_GT(FlashPulses::opacityAt(pulse + 0.05, false), 0.0);
        EXPECT_LT(FlashPulses::opacityAt(pulse + 0.05, false), 0.6);
        EXPECT_GT(FlashPulses::opacityAt(pulse + 0.45, false), 0.0);
    }
    EXPECT_DOUBLE_EQ(FlashPulses::opacityAt(3.0, false), 0.0);
    EXPECT_DOUBLE_EQ(FlashPulses::opacityAt(1.0, true), 0.6);
    EXPECT_DOUBLE_EQ(FlashPulses::opacityAt(2.0, true), 0.0);
    // Ease out rises fast at first; ease in falls slowly at first.
    EXPECT_GT(FlashPulses::opacityAt(0.05, false), 0.3);
    EXPECT_GT(FlashPulses::opacityAt(0.3 + 0.15, false), 0.3);
}

class DropoutFlashModelTest : public DanteViewsFixture { };

TEST_F(
    DropoutFlashModelTest, TwoDevicesDroppingOutInOneUpdateFlashOnceAndAThirdASecondLaterRestarts)
{
    seen({"A", "B", "C", "D"});
    DropoutFlashModel flash;
    attach(flash);
    lost({"A", "B"});
    EXPECT_EQ(flash.flashCount(), 1);
    now += 1.2;
    flash.advance();
    EXPECT_DOUBLE_EQ(flash.opacity(), 0.6);
    now += 0.8;
    lost({"C"});
    EXPECT_EQ(flash.flashCount(), 2);
    // From the first pulse again: at 2.3 s after the restart it would be in its last rest.
    now += 2.2;
    flash.advance();
    EXPECT_DOUBLE_EQ(flash.opacity(), 0.6);
    EXPECT_TRUE(flash.isFlashing());
    now += 1.0;
    flash.advance();
    EXPECT_FALSE(flash.isFlashing());
    EXPECT_DOUBLE_EQ(flash.opacity(), 0.0);
}

TEST_F(DropoutFlashModelTest, WithTheSettingOffADanteDropoutDoesNotFlashButAnUrgentMessageDoes)
{
    seen({"A"});
    settings.setDropoutFlash(false);
    DropoutFlashModel flash;
    attach(flash);
    flash.setUrgentFlashCount(0);
    lost({"A"});
    EXPECT_EQ(flash.flashCount(), 0);
    flash.setUrgentFlashCount(1);
    EXPECT_EQ(flash.flashCount(), 1);
}

TEST_F(DropoutFlashModelTest, AnUrgentCountFromThreeToThreeOrToALowerCountFlashesNothing)
{
    DropoutFlashModel flash;
    attach(flash);
    // Where the view starts is not news.
    flash.setUrgentFlashCount(3);
    EXPECT_EQ(flash.flashCount(), 0);
    flash.setUrgentFlashCount(3);
    EXPECT_EQ(flash.flashCount(), 0);
    flash.setUrgentFlashCount(0);
    EXPECT_EQ(flash.flashCount(), 0);
    flash.setUrgentFlashCount(1);
    EXPECT_EQ(flash.flashCount(), 1);
}

TEST_F(DropoutFlashModelTest, ADeviceComingBackNeverFlashesAndDevicesAlreadyOfflineAreNotNews)
{
    seen({"A", "B"});
    lost({"A"});
    DropoutFlashModel flash;
    attach(flash);
    EXPECT_EQ(flash.flashCount(), 0);
    roster.seen("A", {}, at(2));
    publish();
    EXPECT_EQ(flash.flashCount(), 0);
    lost({"B"});
    EXPECT_EQ(flash.flashCount(), 1);
}

TEST_F(DropoutFlashModelTest, WithReducedMotionTheFlashIsOneSoftPulse)
{
    seen({"A"});
    DropoutFlashModel flash;
    flash.setReducedMotion(true);
    attach(flash);
    lost({"A"});
    now += 1.0;
    flash.advance();
    EXPECT_DOUBLE_EQ(flash.opacity(), 0.6);
    now += 1.6;
    flash.advance();
    EXPECT_FALSE(flash.isFlashing());
}

class DanteStatusModelTest : public DanteViewsFixture { };

TEST_F(DanteStatusModelTest, OneOfflineDeviceIsNamedInOrangeAndMoreAreCounted)
{
    DanteStatusModel status;
    status.setDante(&monitor);
    status.setShowsDante(true);
    status.setVisible(true);
    seen({"Stage-Box-1", "Stage-Box-2", "Amp"});
    EXPECT_TRUE(status.shows());
    EXPECT_FALSE(status.isWarning());
    EXPECT_TRUE(status.showsDot());
    EXPECT_EQ(status.text(), "3 devices");
    EXPECT_EQ(status.accessibleName(), "Dante, 3 devices online");
    QSignalSpy announced(&status, &DanteStatusModel::announced);
    lost({"Stage-Box-2"});
    EXPECT_TRUE(status.isWarning());
    EXPECT_EQ(status.text(), "Stage-Box-2 offline");
    EXPECT_EQ(status.textColorRole(), role(Theme::Role::orange));
    EXPECT_EQ(status.accessibleName(), "Dante warning, 1 offline");
    ASSERT_EQ(announced.count(), 1);
    EXPECT_EQ(announced.front().front().toString(), "Dante device Stage-Box-2 went offline");
    lost({"Amp"});
    EXPECT_EQ(status.text(), "2 Dante devices offline");
    EXPECT_EQ(announced.count(), 2);
    EXPECT_EQ(DanteStatusModel::onlineText(1), "1 device");
}

TEST_F(DanteStatusModelTest, TheLineIsQuietWhileTheWidgetHasItsPlaceOrDantePanelsAreOff)
{
    DanteStatusModel status;
    status.setDante(&monitor);
    status.setShowsDante(true);
    seen({"A"});
    lost({"A"});
    EXPECT_FALSE(status.shows());
    status.setVisible(true);
    EXPECT_TRUE(status.shows());
    status.setShowsDante(false);
    EXPECT_FALSE(status.shows());
}

class DanteWidgetModelTest : public DanteViewsFixture { };

TEST_F(DanteWidgetModelTest, WithExactlyEightDevicesNoOverflowCountAppearsAndWithNineItReadsOne)
{
    DanteWidgetModel widget;
    widget.setDante(&monitor);
    seen({"D1", "D2", "D3", "D4", "D5", "D6", "D7", "D8"});
    EXPECT_EQ(widget.listed().size(), 8);
    EXPECT_FALSE(widget.showsMore());
    seen({"D9"});
    EXPECT_EQ(widget.listed().size(), 8);
    EXPECT_TRUE(widget.showsMore());
    EXPECT_EQ(widget.moreText(), "1 more");
    // Four names a column.
    EXPECT_EQ(widget.gridColumns(), 2);
    EXPECT_DOUBLE_EQ(widget.gridWidth(), 306.0);
}

TEST_F(DanteWidgetModelTest, AllOnlineShowsTheCountLargeAndOfflineShowsHowManyOfAllInOrange)
{
    DanteWidgetModel widget;
    widget.setDante(&monitor);
    widget.setScale(2.0);
    seen({"Amp", "Stage-Box-10", "Stage-Box-2"});
    EXPECT_EQ(widget.countText(), "3");
    EXPECT_EQ(widget.detailText(), "devices online");
    EXPECT_EQ(widget.accessibleName(), "Dante, 3 devices online");
    EXPECT_DOUBLE_EQ(widget.countSize(), 112.0);
    EXPECT_DOUBLE_EQ(widget.maximumWidth(), 1040.0);
    lost({"Stage-Box-10"});
    EXPECT_TRUE(widget.hasOffline());
    EXPECT_EQ(widget.countText(), "2 of 3 online");
    EXPECT_EQ(widget.detailText(), "Stage-Box-10 offline");
    EXPECT_EQ(widget.countColorRole(), role(Theme::Role::orange));
    EXPECT_EQ(widget.accessibleName(), "Dante warning, 1 offline, 2 of 3 online");
    EXPECT_DOUBLE_EQ(widget.countSize(), 68.0);
    // Offline first, then in natural order.
    QStringList names;
    for (const QVariant& entry : widget.listed())
        names.append(entry.toMap().value("name").toString());
    EXPECT_EQ(names, QStringList({"Stage-Box-10", "Amp", "Stage-Box-2"}));
    EXPECT_EQ(
        widget.listed().front().toMap().value("colorRole").toInt(), role(Theme::Role::orange));
    EXPECT_EQ(widget.listed().back().toMap().value("colorRole").toInt(), role(Theme::Role::green));
    lost({"Amp"});
    EXPECT_EQ(widget.detailText(), "2 devices offline");
    roster.removeOffline();
    publish();
    EXPECT_EQ(widget.countText(), "1");
    EXPECT_EQ(widget.detailText(), "device online");
}

class DanteDevicesModelTest : public DanteViewsFixture { };

TEST_F(DanteDevicesModelTest, TheEmptyStateTellsWhetherMonitoringIsOff)
{
    DanteDevicesModel devices;
    devices.setDante(&monitor);
    devices.setSettings(&settings);
    EXPECT_TRUE(devices.isEmpty());
    EXPECT_EQ(devices.emptyTitle(), "No Dante Devices Found");
    EXPECT_EQ(devices.emptySymbol(), "network");
    EXPECT_EQ(devices.emptyText(),
        "Dante devices on this computer's network will appear here automatically.");
    settings.setMonitoringEnabled(false);
    EXPECT_EQ(devices.emptyTitle(), "Dante Monitoring Is Off");
    EXPECT_EQ(devices.emptySymbol(), "network.slash");
    EXPECT_EQ(devices.emptyText(), QString::fromUtf8("Turn it on in Settings \u203A QLab."));
}

TEST_F(DanteDevicesModelTest, RowsShowEachColumnOfflineFirstAndRemoveOfflineForgetsThem)
{
    DanteDevicesModel devices;
    devices.setDante(&monitor);
    devices.setSettings(&settings);
    EXPECT_EQ(devices.headers(),
        QStringList({"Status", "Name", "Model", "Manufacturer", "IP Address", "Firmware"}));
    roster.seen(
        "Amp", {{"model", "D80"}, {"mf", "d&b audiotechnik"}, {"router_vers", "4.2.1"}}, at(0));
    roster.setAddress("192.168.1.24", "Amp");
    roster.seen("Box", {}, at(0));
    publish();
    EXPECT_FALSE(devices.canRemoveOffline());
    ASSERT_EQ(devices.rowCount(), 2);
    const auto cell
        = [&](int row, int column) { return devices.data(devices.index(row), column).toString(); };
    EXPECT_EQ(cell(0, DanteDevicesModel::statusRole), "Online");
    EXPECT_EQ(cell(0, DanteDevicesModel::modelRole), "D80");
    EXPECT_EQ(cell(0, DanteDevicesModel::manufacturerRole), "d&b audiotechnik");
    EXPECT_EQ(cell(0, DanteDevicesModel::addressRole), "192.168.1.24");
    EXPECT_EQ(cell(0, DanteDevicesModel::firmwareRole), "4.2.1");
    // An absent detail shows an empty cell.
    EXPECT_EQ(cell(1, DanteDevicesModel::modelRole), "");
    lost({"Box"});
    EXPECT_EQ(cell(0, DanteDevicesModel::nameRole), "Box");
    EXPECT_EQ(cell(0, DanteDevicesModel::statusRole), "Offline");
    EXPECT_EQ(devices.data(devices.index(0), DanteDevicesModel::statusColorRole).toInt(),
        role(Theme::Role::orange));
    EXPECT_TRUE(devices.canRemoveOffline());
    devices.removeOfflineDevices();
    settle();
    EXPECT_EQ(devices.rowCount(), 1);
    EXPECT_FALSE(devices.canRemoveOffline());
    // The log keeps what was forgotten.
    EXPECT_EQ(monitor.events().size(), size_t(1));
}

class DropoutLogModelTest : public DanteViewsFixture { };

TEST_F(DropoutLogModelTest, EachEventShowsItsSymbolColourWordsAndTimeNewestFirst)
{
    DropoutLogModel log;
    log.setDante(&monitor);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(log.emptyText(), "No dropouts since Ostrel Live opened.");
    seen({"Amp"});
    lost({"Amp"});
    roster.seen("Amp", {}, at(5));
    publish();
    ASSERT_EQ(log.rowCount(), 2);
    const auto value = [&](int row, int column) { return log.data(log.index(row), column); };
    EXPECT_EQ(value(0, DropoutLogModel::textRole).toString(), "came back");
    EXPECT_EQ(value(0, DropoutLogModel::symbolRole).toString(), "checkmark.circle.fill");
    EXPECT_EQ(value(0, DropoutLogModel::colorRoleRole).toInt(), role(Theme::Role::green));
    EXPECT_EQ(value(1, DropoutLogModel::textRole).toString(), "went offline");
    EXPECT_EQ(value(1, DropoutLogModel::symbolRole).toString(), "exclamationmark.triangle.fill");
    EXPECT_EQ(value(1, DropoutLogModel::colorRoleRole).toInt(), role(Theme::Role::orange));
    EXPECT_EQ(value(1, DropoutLogModel::deviceRole).toString(), "Amp");
    EXPECT_EQ(value(0, DropoutLogModel::timeRole).toString(), DropoutLogModel::timeText(at(5)));
    EXPECT_EQ(DropoutLogModel::timeText(at(5)).size(), 8);
}

TEST(SideColumnModel, TimecodeWinsThenDanteWithADeviceThenNothing)
{
    using Column = SideColumnModel::Column;
    EXPECT_EQ(SideColumnModel::columnFor(true, true, true), Column::timecode);
    EXPECT_EQ(SideColumnModel::columnFor(false, true, true), Column::dante);
    EXPECT_EQ(SideColumnModel::columnFor(false, true, false), Column::none);
    EXPECT_EQ(SideColumnModel::columnFor(false, false, true), Column::none);
}

TEST(SideColumnModel, TheWidgetTakesThePlaceOnceADeviceIsKnown)
{
    DanteMonitor monitor;
    QLabClient qlab({}, [] { return std::chrono::system_clock::now(); });
    SideColumnModel side;
    side.setQlab(&qlab);
    side.setDante(&monitor);
    side.setShowsDante(true);
    EXPECT_FALSE(side.showsDanteWidget());
    monitor.simulate(DanteWatch::sampleRoster(true, start));
    settle();
    EXPECT_TRUE(side.showsDanteWidget());
    EXPECT_FALSE(side.showsDanteStatus());
    side.setShowsDante(false);
    EXPECT_FALSE(side.showsDanteWidget());
}
