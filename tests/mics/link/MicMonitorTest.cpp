// The mic monitor over real links to the fake ew G4 receiver, bound to free ports so that these
// tests can run beside the others.
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "FakePeer.h"
#include "mics/link/Keychain.h"
#include "mics/link/MicMonitor.h"
#include "settings/SettingsStore.h"

namespace ostrel {

namespace {

Date now()
{
    return std::chrono::system_clock::now();
}

MicMonitor::Timings timingsFor(quint16 receiverPort)
{
    MicMonitor::Timings timings;
    timings.g4.receiverPort = receiverPort;
    timings.g4.localPort = 0;
    timings.g4.tickMs = 50;
    timings.g4.silenceLimit = 30.0;
    return timings;
}

MicReceiver loopbackG4()
{
    return MicReceiver {QUuid::createUuid(), MicReceiverKind::g4, "127.0.0.1", "Rack A"};
}

} // namespace

class MicMonitorTest : public QObject {
    Q_OBJECT

    Keychain keychain;

private slots:
    void enablingTwiceStartsEachLinkOnce()
    {
        MicMonitor monitor(nullptr, keychain, timingsFor(9), &now);
        monitor.addReceiver(loopbackG4(), std::nullopt);
        monitor.addReceiver(loopbackG4(), std::nullopt);
        monitor.setEnabled(true);
        monitor.setEnabled(true);
        QCOMPARE(monitor.clientStarts(), 2);
        monitor.setEnabled(false);
        QVERIFY(!monitor.g4Client(monitor.receivers().front().id));
        monitor.setEnabled(true);
        QCOMPARE(monitor.clientStarts(), 4);
    }

    void removingAReceiverDuringADropoutTakesItsIssueOffAtOnce()
    {
        test::FakePeer fake(
            OSTREL_FAKE_G4, {"--scenario", "signal-then-mute", "--cycle", "50", "--name", "Bob"});
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        MicMonitor monitor(nullptr, keychain, timingsFor(port), &now);
        const MicReceiver receiver = loopbackG4();
        monitor.addReceiver(receiver, std::nullopt);
        monitor.setEnabled(true);
        QTRY_VERIFY(!monitor.issues().empty());
        QCOMPARE(monitor.issues().front().kind, MicIssueKind::dropout);
        monitor.removeReceiver(receiver.id);
        QVERIFY(monitor.issues().empty());
        QVERIFY(monitor.channelNames().isEmpty());
    }

    void aHeldIssueGoesWithinASecondOfItsHoldWithoutANewReport()
    {
        test::FakePeer fake(
            OSTREL_FAKE_G4, {"--scenario", "flicker", "--cycle", "50", "--name", "Bob"});
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        MicMonitor monitor(nullptr, keychain, timingsFor(port), &now);
        monitor.addReceiver(loopbackG4(), std::nullopt);
        monitor.setEnabled(true);
        QTRY_VERIFY(!monitor.issues().empty());
        QVERIFY(!fake.waitFor("silent").isNull());
        QElapsedTimer sinceLastReport;
        sinceLastReport.start();
        // The dropout is held for three seconds after the signal came back.
        QTest::qWait(2500);
        QCOMPARE(monitor.issues().size(), size_t(1));
        QTRY_VERIFY_WITH_TIMEOUT(monitor.issues().empty(), 3000);
        QVERIFY(sinceLastReport.elapsed() < 4200);
    }

    void simulatedIssuesGiveWayToTheRosterWhenMonitoringIsEnabledAgain()
    {
        MicMonitor monitor(nullptr, keychain, timingsFor(9), &now);
        monitor.setEnabled(true);
        monitor.simulate({MicIssue {"demo#3", "SCROOGE", MicIssueKind::dropout, now()}},
            QStringList {"SCROOGE"});
        QVERIFY(!monitor.isEnabled());
        QTest::qWait(1500);
        QCOMPARE(monitor.issues().size(), size_t(1));
        QCOMPARE(monitor.channelNames(), QStringList {"SCROOGE"});
        monitor.setEnabled(true);
        QTRY_VERIFY_WITH_TIMEOUT(monitor.issues().empty(), 2500);
        QVERIFY(monitor.channelNames().isEmpty());
    }

    void aStoredListWithOneUndecodableElementLeavesNoReceivers()
    {
        QTemporaryDir folder;
        QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
        settings.setValue("micReceivers",
            R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","kind":"g4","host":"a","label":""},)"
            R"({"id":"6F9619FF-8B86-D011-B42D-00C04FC964F0","kind":"g9","host":"b","label":""}])");
        SettingsStore store(settings);
        MicMonitor monitor(&store, keychain, {}, &now);
        QVERIFY(monitor.receivers().empty());
    }

    void aStoredListIsReadAndEveryChangeIsSaved()
    {
        QTemporaryDir folder;
        QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
        SettingsStore store(settings);
        const MicReceiver receiver = loopbackG4();
        {
            MicMonitor monitor(&store, keychain, {}, &now);
            monitor.addReceiver(receiver, std::nullopt);
        }
        MicMonitor again(&store, keychain, {}, &now);
        QCOMPARE(again.receivers().size(), size_t(1));
        QCOMPARE(again.receivers().front(), receiver);
        again.removeReceiver(receiver.id);
        MicMonitor third(&store, keychain, {}, &now);
        QVERIFY(third.receivers().empty());
    }

    void aNameAloneFallsBackToTheLabelThenTheHost()
    {
        G4ReceiverClient labelled(loopbackG4(), {}, &now);
        QCOMPARE(labelled.displayName(), QString("Rack A"));
        G4ReceiverClient bare(
            MicReceiver {QUuid::createUuid(), MicReceiverKind::g4, "10.1.2.3", ""}, {}, &now);
        QCOMPARE(bare.displayName(), QString("10.1.2.3"));
    }
};

} // namespace ostrel

QTEST_GUILESS_MAIN(ostrel::MicMonitorTest)
#include "MicMonitorTest.moc"
