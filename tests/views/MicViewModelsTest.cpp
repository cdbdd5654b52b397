#include <gtest/gtest.h>

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <chrono>
#include <map>

#include "mics/link/MicMonitor.h"
#include "model/DisplaySettings.h"
#include "views/components/Theme.h"
#include "views/components/Unhinged.h"
#include "views/mics/AddReceiverModel.h"
#include "views/mics/MicAlertsModel.h"
#include "views/mics/MicSettingsModel.h"

using namespace ostrel;

namespace {

// Passwords kept in memory: what these view models hand on is all that is checked here; the
// keyring itself is tested against a real Secret Service.
class MemoryPasswords : public PasswordStore {
public:
    void setPassword(const QString& password, const QUuid& id, Done done) override
    {
        stored[id] = password;
        if (done) done(std::nullopt);
    }
    void password(const QUuid& id, Read read) override
    {
        PasswordReading reading;
        if (stored.count(id)) reading.password = stored[id];
        if (read) read(reading);
    }
    void deletePassword(const QUuid& id) override { stored.erase(id); }

    std::map<QUuid, QString> stored;
};

Date now()
{
    return std::chrono::system_clock::now();
}

MicIssue issue(const QString& key, const QString& name, MicIssueKind kind)
{
    return MicIssue {key, name, kind, now()};
}

int role(Theme::Role value)
{
    return static_cast<int>(value);
}

class MicViewModelsTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QSettings settings {folder.filePath("settings.ini"), QSettings::IniFormat};
    SettingsStore store {settings};
    DisplaySettings display {store};
    MicMonitoringSettings switches {store};
    MemoryPasswords passwords;
    MicMonitor monitor {nullptr, passwords, {}, &now};
};

} // namespace

TEST_F(MicViewModelsTest, RowsAreRedForDropoutsAndSilentReceiversAndOrangeForTheRest)
{
    MicAlertsModel alerts;
    alerts.setMics(&monitor);
    EXPECT_FALSE(alerts.isVisible());
    monitor.simulate({issue("A#1", "Bob", MicIssueKind::dropout),
                         issue("B", "Rack B", MicIssueKind::receiverOffline),
                         issue("A#2", "Amy", MicIssueKind::lowSignal),
                         issue("A#3", "Cy", MicIssueKind::lowBattery)},
        std::nullopt);
    ASSERT_EQ(alerts.rows().size(), 4);
    EXPECT_TRUE(alerts.isVisible());
    const auto row = [&](int i) { return alerts.rows()[i].toMap(); };
    EXPECT_EQ(row(0)["text"].toString(), "Bob \u00B7 Dropout");
    EXPECT_EQ(row(0)["symbol"].toString(), "mic.slash.fill");
    EXPECT_EQ(row(0)["colorRole"].toInt(), role(Theme::Role::red));
    EXPECT_EQ(row(1)["symbol"].toString(), "exclamationmark.triangle.fill");
    EXPECT_EQ(row(1)["colorRole"].toInt(), role(Theme::Role::red));
    EXPECT_EQ(row(2)["symbol"].toString(), "antenna.radiowaves.left.and.right");
    EXPECT_EQ(row(2)["colorRole"].toInt(), role(Theme::Role::orange));
    EXPECT_EQ(row(3)["text"].toString(), "Cy \u00B7 Low battery");
    EXPECT_EQ(row(3)["symbol"].toString(), "battery.25percent");
    EXPECT_EQ(row(3)["colorRole"].toInt(), role(Theme::Role::orange));
    EXPECT_EQ(row(3)["accessibleName"].toString(), "Cy, Low battery");
}

TEST_F(MicViewModelsTest, NothingIsShownWhenMicAlertsAreOff)
{
    MicAlertsModel alerts;
    alerts.setMics(&monitor);
    monitor.simulate({issue("A#1", "Bob", MicIssueKind::dropout)}, std::nullopt);
    alerts.setShows(false);
    EXPECT_FALSE(alerts.isVisible());
}

TEST_F(MicViewModelsTest, UnhingedModeSwearsButScreenReadersKeepTheNormalWording)
{
    MicAlertsModel alerts;
    alerts.setMics(&monitor);
    alerts.setDisplay(&display);
    monitor.simulate({issue("A#1", "Bob", MicIssueKind::dropout)}, std::nullopt);
    display.setUnhingedMode(true);
    EXPECT_EQ(alerts.rows()[0].toMap()["text"].toString(), "Bob \u00B7 fucking died");
    EXPECT_EQ(alerts.rows()[0].toMap()["accessibleName"].toString(), "Bob, Dropout");
    EXPECT_EQ(Unhinged::title(MicIssueKind::receiverOffline), "receiver's ghosting us");
    EXPECT_EQ(Unhinged::title(MicIssueKind::lowSignal), "barely fucking there");
    EXPECT_EQ(Unhinged::title(MicIssueKind::lowBattery), "batteries are fucked");
}

TEST_F(MicViewModelsTest, ANewDropoutIsAnnouncedButALowBatteryIsNot)
{
    MicAlertsModel alerts;
    alerts.setMics(&monitor);
    QSignalSpy announced(&alerts, &MicAlertsModel::announced);
    monitor.simulate({issue("A#3", "Cy", MicIssueKind::lowBattery)}, std::nullopt);
    EXPECT_EQ(announced.count(), 0);
    monitor.simulate({issue("A#1", "Bob", MicIssueKind::dropout),
                         issue("B", "Rack B", MicIssueKind::receiverOffline),
                         issue("A#3", "Cy", MicIssueKind::lowBattery)},
        std::nullopt);
    ASSERT_EQ(announced.count(), 2);
    EXPECT_EQ(announced[0][0].toString(), "Bob Dropout");
    EXPECT_EQ(announced[1][0].toString(), "Rack B Not responding");
}

TEST_F(MicViewModelsTest, ARecurringIssueKeepsItsRowWithoutANewAnnouncement)
{
    MicAlertsModel alerts;
    alerts.setMics(&monitor);
    QSignalSpy announced(&alerts, &MicAlertsModel::announced);
    MicIssue dropout = issue("A#1", "Bob", MicIssueKind::dropout);
    monitor.simulate({dropout}, std::nullopt);
    ASSERT_EQ(announced.count(), 1);
    // The same id with a new spell's date: the row stays, nothing is said again.
    dropout.since += std::chrono::seconds(2);
    monitor.simulate({dropout}, std::nullopt);
    EXPECT_EQ(announced.count(), 1);
    EXPECT_EQ(alerts.rows().size(), 1);
}

TEST_F(MicViewModelsTest, ReceiverRowsShowTheLabelOrHostTheKindAndTheProblem)
{
    MicSettingsModel page;
    page.setMics(&monitor);
    page.setSettings(&switches);
    EXPECT_FALSE(page.hasReceivers());
    EXPECT_EQ(page.emptyText(), "No receivers added yet.");
    const MicReceiver g4 {QUuid::createUuid(), MicReceiverKind::g4, "192.168.1.50", "Rack A"};
    const MicReceiver ewdx {QUuid::createUuid(), MicReceiverKind::ewdx, "192.168.1.60", ""};
    // Only the EW-DX link starts: it finds no password and creates no client.
    monitor.addReceiver(ewdx, std::nullopt);
    monitor.setEnabled(true);
    monitor.setEnabled(false);
    monitor.addReceiver(g4, std::nullopt);
    ASSERT_EQ(page.receiverRows().size(), 2);
    const QVariantMap first = page.receiverRows()[1].toMap();
    EXPECT_EQ(first["title"].toString(), "Rack A");
    EXPECT_EQ(first["subtitle"].toString(), "ew G4 \u00B7 192.168.1.50");
    EXPECT_FALSE(first["hasProblem"].toBool());
    const QVariantMap second = page.receiverRows()[0].toMap();
    EXPECT_EQ(second["title"].toString(), "192.168.1.60");
    EXPECT_EQ(second["problem"].toString(), "Enter the 3rd Party Access password.");
    page.removeReceiver(second["id"].toString());
    EXPECT_EQ(page.receiverRows().size(), 1);
}

TEST_F(MicViewModelsTest, TheLowBatterySwitchFollowsTheMonitoringSwitch)
{
    MicSettingsModel page;
    page.setSettings(&switches);
    EXPECT_TRUE(page.monitoringEnabled());
    page.setMonitoringEnabled(false);
    EXPECT_FALSE(switches.monitoringEnabled());
    EXPECT_FALSE(page.property("lowBatteryToggleEnabled").toBool());
    page.setLowBatteryWarnings(false);
    EXPECT_FALSE(switches.lowBatteryWarnings());
}

TEST_F(MicViewModelsTest, AddNeedsAnAddressAndGivesAPasswordOnlyToEWDX)
{
    AddReceiverModel form;
    form.setMics(&monitor);
    EXPECT_EQ(form.kindTitles(), (QStringList {"ew G4", "EW-DX"}));
    EXPECT_FALSE(form.showsPassword());
    EXPECT_TRUE(form.hint().startsWith("Works with EM 300-500 G4"));
    form.setHost("   ");
    EXPECT_FALSE(form.canAdd());
    EXPECT_FALSE(form.add());
    form.setHost(" 10.0.0.7 ");
    form.setLabel(" Rack A ");
    form.setPassword("ignored");
    ASSERT_TRUE(form.add());
    ASSERT_EQ(monitor.receivers().size(), 1u);
    EXPECT_EQ(monitor.receivers()[0].host, "10.0.0.7");
    EXPECT_EQ(monitor.receivers()[0].label, "Rack A");
    EXPECT_TRUE(passwords.stored.empty());
    EXPECT_TRUE(form.host().isEmpty());

    form.setKindIndex(1);
    EXPECT_TRUE(form.showsPassword());
    EXPECT_TRUE(form.hint().startsWith("In WSM, right-click the receiver"));
    form.setHost("10.0.0.8");
    form.setPassword("s3cret");
    ASSERT_TRUE(form.add());
    ASSERT_EQ(monitor.receivers().size(), 2u);
    EXPECT_EQ(monitor.receivers()[1].kind, MicReceiverKind::ewdx);
    EXPECT_EQ(passwords.stored.at(monitor.receivers()[1].id), "s3cret");
}
