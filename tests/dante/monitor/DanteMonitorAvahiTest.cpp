// The Dante monitor against a real avahi-daemon on loopback, with devices announced by
// avahi-publish: what the operator sees when one appears, drops out and comes back.
#include <QElapsedTimer>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "MdnsServices.h"
#include "dante/DanteSettings.h"
#include "dante/monitor/DanteMonitor.h"
#include "network/DnsSdTxt.h"
#include "network/avahi/DnsSdBrowser.h"
#include "network/avahi/DnsSdPublisher.h"
#include "settings/SettingsStore.h"
#include "views/components/Theme.h"
#include "views/dante/DanteStatusModel.h"
#include "views/dante/DanteWidgetModel.h"
#include "views/dante/DropoutFlashModel.h"

using namespace ostrel;
using testsupport::FakeDevice;

namespace {

const DanteDevice* find(const DanteMonitor& monitor, const QString& name)
{
    const auto& devices = monitor.roster().devices();
    const auto found = devices.find(name);
    return found == devices.end() ? nullptr : &found->second;
}

bool hasResolved(const DanteMonitor& monitor, const QString& name)
{
    const DanteDevice* device = find(monitor, name);
    return device && device->address.has_value();
}

// The Dante settings over a scratch store.
struct Settings {
    QTemporaryDir folder;
    QSettings file {folder.filePath("settings.ini"), QSettings::IniFormat};
    SettingsStore store {file};
    DanteSettings dante {store};
};

} // namespace

class DanteMonitorAvahiTest : public QObject {
    Q_OBJECT

private slots:
    void init() { QVERIFY(testsupport::settleDevices()); }

    void threeDevicesAppearWithTheirTxtFieldsAndAddresses()
    {
        FakeDevice a("Stage-Box-1", {"model=DX168", "mf=Allen & Heath", "router_vers=4.2.1"});
        FakeDevice b("Amp-Rack-L",
            {"model=", "model_id=D80", "manufacturer=d&b audiotechnik", "server_vers=2.1"});
        FakeDevice c("FOH-Desk", {"model=SQ-7", "mf=Allen & Heath", "arcp_vers=1.0.3"});
        QVERIFY(a.waitUntilEstablished() && b.waitUntilEstablished() && c.waitUntilEstablished());
        DanteMonitor monitor;
        monitor.start();
        QTRY_VERIFY_WITH_TIMEOUT(hasResolved(monitor, "Stage-Box-1")
                && hasResolved(monitor, "Amp-Rack-L") && hasResolved(monitor, "FOH-Desk"),
            10000);
        QTRY_COMPARE(monitor.devices().size(), size_t(3));
        const DanteDevice* box = find(monitor, "Stage-Box-1");
        QCOMPARE(box->model, QString("DX168"));
        QCOMPARE(box->manufacturer, QString("Allen & Heath"));
        QCOMPARE(box->firmware, QString("4.2.1"));
        QCOMPARE(box->address, QString("127.0.0.1"));
        QVERIFY(box->isOnline);
        const DanteDevice* amp = find(monitor, "Amp-Rack-L");
        QCOMPARE(amp->model, QString("D80"));
        QCOMPARE(amp->manufacturer, QString("d&b audiotechnik"));
        QCOMPARE(amp->firmware, QString("2.1"));
        QCOMPARE(find(monitor, "FOH-Desk")->firmware, QString("1.0.3"));
        // A first sighting is not news.
        QVERIFY(monitor.events().empty());
        QVERIFY(!monitor.hasProblem());
    }

    void killingAPublisherGivesAnOfflineEventTheFlashAndTheOrangeName()
    {
        FakeDevice keep("Stage-Box-3", {"model=DX168"});
        auto drop = std::make_unique<FakeDevice>("Stage-Box-4", QStringList {"model=DX168"});
        QVERIFY(keep.waitUntilEstablished() && drop->waitUntilEstablished());
        Settings settings;
        DanteMonitor monitor;
        DropoutFlashModel flash;
        flash.setDante(&monitor);
        flash.setSettings(&settings.dante);
        DanteStatusModel status;
        status.setDante(&monitor);
        status.setShowsDante(true);
        status.setVisible(true);
        DanteWidgetModel widget;
        widget.setDante(&monitor);
        monitor.start();
        QTRY_VERIFY_WITH_TIMEOUT(
            hasResolved(monitor, "Stage-Box-3") && hasResolved(monitor, "Stage-Box-4"), 10000);
        QTRY_COMPARE(status.text(), QString("2 devices"));
        QCOMPARE(flash.flashCount(), 0);

        QElapsedTimer sinceKill;
        sinceKill.start();
        drop->kill();
        QTRY_VERIFY_WITH_TIMEOUT(!monitor.events().empty(), 10000);
        const qint64 toEvent = sinceKill.elapsed();
        qInfo("Publisher killed to offline event: %lld ms", static_cast<long long>(toEvent));
        QCOMPARE(monitor.events().front().kind, DanteEvent::Kind::droppedOut);
        QCOMPARE(monitor.events().front().device, QString("Stage-Box-4"));
        QTRY_COMPARE(flash.flashCount(), 1);
        QVERIFY(flash.isFlashing());
        QTRY_VERIFY(flash.opacity() > 0.0);
        QCOMPARE(status.text(), QString("Stage-Box-4 offline"));
        QCOMPARE(status.textColorRole(), static_cast<int>(Theme::Role::orange));
        QCOMPARE(status.lastAnnouncement(), QString("Dante device Stage-Box-4 went offline"));
        const QVariantMap first = widget.listed().front().toMap();
        QCOMPARE(first.value("name").toString(), QString("Stage-Box-4"));
        QCOMPARE(first.value("colorRole").toInt(), static_cast<int>(Theme::Role::orange));
        QCOMPARE(widget.countText(), QString("1 of 2 online"));
        QCOMPARE(widget.detailText(), QString("Stage-Box-4 offline"));
    }

    void bringingADeviceBackGivesAReturnEventNoFlashAndKeepsItsAddress()
    {
        auto device = std::make_unique<FakeDevice>("Stage-Box-5", QStringList {"model=DX168"});
        QVERIFY(device->waitUntilEstablished());
        Settings settings;
        DanteMonitor monitor;
        DropoutFlashModel flash;
        flash.setDante(&monitor);
        flash.setSettings(&settings.dante);
        monitor.start();
        QTRY_VERIFY_WITH_TIMEOUT(hasResolved(monitor, "Stage-Box-5"), 10000);
        device->kill();
        QTRY_VERIFY_WITH_TIMEOUT(!find(monitor, "Stage-Box-5")->isOnline, 10000);
        QTRY_COMPARE(flash.flashCount(), 1);
        device = std::make_unique<FakeDevice>(
            "Stage-Box-5", QStringList {"model=DX168", "router_vers=4.3.0"});
        QVERIFY(device->waitUntilEstablished());
        QTRY_VERIFY_WITH_TIMEOUT(find(monitor, "Stage-Box-5")->isOnline, 10000);
        QTRY_COMPARE_WITH_TIMEOUT(find(monitor, "Stage-Box-5")->firmware, QString("4.3.0"), 10000);
        QCOMPARE(monitor.events().size(), size_t(2));
        QCOMPARE(monitor.events()[0].kind, DanteEvent::Kind::returned);
        QCOMPARE(monitor.events()[1].kind, DanteEvent::Kind::droppedOut);
        QCOMPARE(find(monitor, "Stage-Box-5")->address, QString("127.0.0.1"));
        QTest::qWait(100);
        QCOMPARE(flash.flashCount(), 1);
    }

    void aServiceRemovedWhileItsLookUpIsPendingCancelsTheLookUp()
    {
        // A host name with no address: the look-up would wait about five seconds and fail.
        auto device = std::make_unique<FakeDevice>(
            "Unresolvable-1", QStringList {"model=X"}, QStringList {"-H", "nowhere-ostrel.local"});
        QVERIFY(device->waitUntilEstablished());
        DanteMonitor monitor;
        monitor.start();
        QTRY_VERIFY_WITH_TIMEOUT(find(monitor, "Unresolvable-1") != nullptr, 10000);
        QVERIFY(monitor.browser()->isResolving("Unresolvable-1"));
        QSignalSpy failures(monitor.browser(), &DnsSdBrowser::resolveFailed);
        device->kill();
        QTRY_VERIFY_WITH_TIMEOUT(!find(monitor, "Unresolvable-1")->isOnline, 10000);
        QVERIFY(!monitor.browser()->isResolving("Unresolvable-1"));
        // Past the time the look-up would have taken to fail: it no longer exists.
        QTest::qWait(6000);
        QCOMPARE(failures.count(), 0);
        QVERIFY(!find(monitor, "Unresolvable-1")->address);
    }

    void startTwiceMakesOneBrowser()
    {
        DanteMonitor monitor;
        monitor.start();
        const DnsSdBrowser* first = monitor.browser();
        monitor.start();
        QCOMPARE(monitor.browsersMade(), 1);
        QCOMPARE(monitor.browser(), first);
        QVERIFY(monitor.isRunning());
        monitor.stop();
        QVERIFY(!monitor.isRunning());
        QVERIFY(!monitor.browser());
    }

    void stopFollowedByStartReReportsKnownDevicesAsSeenWithNoEvents()
    {
        FakeDevice device("Stage-Box-6", {"model=DX168"});
        QVERIFY(device.waitUntilEstablished());
        DanteMonitor monitor;
        monitor.start();
        QTRY_VERIFY_WITH_TIMEOUT(hasResolved(monitor, "Stage-Box-6"), 10000);
        const Date lastChange = find(monitor, "Stage-Box-6")->lastChange;
        monitor.stop();
        QVERIFY(find(monitor, "Stage-Box-6"));
        monitor.start();
        QSignalSpy seen(monitor.browser(), &DnsSdBrowser::serviceResolved);
        QTRY_VERIFY_WITH_TIMEOUT(seen.count() >= 1, 10000);
        QVERIFY(find(monitor, "Stage-Box-6")->isOnline);
        QCOMPARE(find(monitor, "Stage-Box-6")->lastChange, lastChange);
        QVERIFY(monitor.events().empty());
    }

    void badAnnouncementsAreReadOrDroppedWithoutACrash()
    {
        QStringList huge;
        for (int i = 0; i < 30; ++i)
            huge.append(QStringLiteral("k%1=").arg(i) + QString(240, u'x'));
        huge.append("model=Big");
        FakeDevice big("Huge-Record", huge);
        // The argument's bytes reach the record as they stand: 0xff is not UTF-8.
        FakeDevice broken("Not-Utf8 _netaudio-arc._udp 4440 \"$(printf 'model=A\\377B')\" "
                          "model_id=DX32 mf=Yamaha");
        FakeDevice bare("No-Details", {});
        FakeDevice odd("Odd-Record", {"=orphan", "flag", "MODEL=Upper"});
        QVERIFY(big.waitUntilEstablished() && broken.waitUntilEstablished()
            && bare.waitUntilEstablished() && odd.waitUntilEstablished());
        DanteMonitor monitor;
        monitor.start();
        QTRY_VERIFY_WITH_TIMEOUT(hasResolved(monitor, "Huge-Record")
                && hasResolved(monitor, "Not-Utf8") && hasResolved(monitor, "No-Details")
                && hasResolved(monitor, "Odd-Record"),
            10000);
        QCOMPARE(find(monitor, "Huge-Record")->model, QString("Big"));
        QCOMPARE(find(monitor, "Not-Utf8")->model, QString("DX32"));
        QCOMPARE(find(monitor, "Not-Utf8")->manufacturer, QString("Yamaha"));
        QVERIFY(!find(monitor, "No-Details")->model);
        QVERIFY(!find(monitor, "No-Details")->manufacturer);
        QVERIFY(!find(monitor, "No-Details")->firmware);
        QCOMPARE(find(monitor, "Odd-Record")->model, QString("Upper"));
    }

    void withTheDaemonStoppedTheStatusSaysSoAndTheMonitorPicksUpWhenItStartsLate()
    {
        QVERIFY(testsupport::mdnsScript("stop-daemon"));
        DanteMonitor monitor;
        DanteStatusModel status;
        status.setDante(&monitor);
        status.setShowsDante(true);
        monitor.start();
        const QString words("Dante devices can't be found: the Avahi daemon isn't running.");
        QTRY_COMPARE(monitor.problem(), words);
        QVERIFY(status.shows());
        QCOMPARE(status.text(), words);
        QVERIFY(status.isWarning());

        const bool started = testsupport::mdnsScript("start-daemon");
        QVERIFY(started);
        FakeDevice late("Late-Box", {"model=DX168"});
        QVERIFY(late.waitUntilEstablished());
        QTRY_VERIFY_WITH_TIMEOUT(hasResolved(monitor, "Late-Box"), 15000);
        QVERIFY(!monitor.hasProblem());
        QVERIFY(!status.isWarning());
    }

    void aDaemonThatStopsMidShowIsReportedAndFollowedWhenItReturns()
    {
        FakeDevice device("Stage-Box-7", {"model=DX168"});
        QVERIFY(device.waitUntilEstablished());
        DanteMonitor monitor;
        monitor.start();
        QTRY_VERIFY_WITH_TIMEOUT(hasResolved(monitor, "Stage-Box-7"), 10000);
        QVERIFY(testsupport::mdnsScript("stop-daemon"));
        QTRY_VERIFY_WITH_TIMEOUT(monitor.hasProblem(), 10000);
        // What could not be seen is not reported: the device stays as it was.
        QVERIFY(find(monitor, "Stage-Box-7")->isOnline);
        QVERIFY(monitor.events().empty());
        QVERIFY(testsupport::mdnsScript("start-daemon"));
        FakeDevice again("Stage-Box-8", {"model=DX168"});
        QVERIFY(again.waitUntilEstablished());
        QTRY_VERIFY_WITH_TIMEOUT(hasResolved(monitor, "Stage-Box-8"), 15000);
        QVERIFY(!monitor.hasProblem());
    }

    void aPublishedServiceIsFoundByABrowserAndASecondOfTheSameNameIsRenamed()
    {
        DnsSdClient client;
        client.start();
        DnsSdBrowser browser(client, "_ostrel._tcp");
        QSignalSpy resolved(&browser, &DnsSdBrowser::serviceResolved);
        browser.start();
        DnsSdPublisher first(client);
        DnsSdPublisher second(client);
        first.publish("Ostrel Test", "_ostrel._tcp", 45123, {"proto=1", "id=first"});
        QTRY_VERIFY_WITH_TIMEOUT(first.isPublished(), 10000);
        second.publish("Ostrel Test", "_ostrel._tcp", 45124, {"proto=1", "id=second"});
        QTRY_VERIFY_WITH_TIMEOUT(second.isPublished(), 10000);
        QCOMPARE(first.name(), QString("Ostrel Test"));
        QCOMPARE(second.name(), QString("Ostrel Test #2"));
        QTRY_VERIFY_WITH_TIMEOUT(resolved.count() >= 2, 10000);
        bool foundFirst = false;
        for (const auto& arguments : resolved) {
            const auto service = arguments.at(0).value<DnsSdService>();
            if (service.name != "Ostrel Test") continue;
            foundFirst = true;
            QCOMPARE(service.port, quint16(45123));
            QCOMPARE(service.address, QString("127.0.0.1"));
            QCOMPARE(DnsSdTxt::map(service.txt).at("id"), QString("first"));
        }
        QVERIFY(foundFirst);
        first.withdraw();
        QSignalSpy removed(&browser, &DnsSdBrowser::serviceRemoved);
        QTRY_VERIFY_WITH_TIMEOUT(removed.count() == 1, 10000);
        QCOMPARE(removed.front().front().toString(), QString("Ostrel Test"));
    }
};

QTEST_MAIN(DanteMonitorAvahiTest)
#include "DanteMonitorAvahiTest.moc"
