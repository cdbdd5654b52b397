// The ew G4 link and the monitor against the project's fake receiver on loopback.
#include <QDateTime>
#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>
#include <sys/resource.h>

#include <fstream>
#include <string>

#include "FakePeer.h"
#include "mics/link/G4ReceiverClient.h"
#include "mics/link/Keychain.h"
#include "mics/link/MicMonitor.h"

namespace ostrel {

namespace {

Date now()
{
    return std::chrono::system_clock::now();
}

MicReceiver receiverAt(const QString& host, const QString& label = QString())
{
    return MicReceiver {QUuid::createUuid(), MicReceiverKind::g4, host, label};
}

struct Reports {
    std::vector<MicChannelReport> reports;
    std::vector<std::pair<bool, QString>> reachability;

    void attach(G4ReceiverClient& client)
    {
        client.onReport = [this](const MicChannelReport& report) { reports.push_back(report); };
        client.onReachabilityChange = [this](bool reachable, const QString& name) {
            reachability.emplace_back(reachable, name);
        };
    }
};

G4ReceiverClient::Timings fastTimings(quint16 receiverPort)
{
    G4ReceiverClient::Timings timings;
    timings.tickMs = 20;
    timings.ticksPerRenewal = 25;
    timings.silenceLimit = 0.4;
    timings.restartDelayMs = 300;
    timings.receiverPort = receiverPort;
    return timings;
}

double processCpuSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

long residentKilobytes()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmRSS:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return -1;
}

} // namespace

class G4LinkTest : public QObject {
    Q_OBJECT

    QStringList fakeArguments(const QString& scenario, const QStringList& more = {})
    {
        return QStringList {"--scenario", scenario, "--name", "Lead Vox"} + more;
    }

private slots:
    void subscribesWithNameThenPushAndReportsItsChannel()
    {
        test::FakePeer fake(OSTREL_FAKE_G4, fakeArguments("signal", {"--cycle", "50"}));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        QVERIFY(port != 0);
        G4ReceiverClient client(receiverAt("127.0.0.1", "Rack A"), fastTimings(port), &now);
        Reports seen;
        seen.attach(client);
        client.start();
        QCOMPARE(client.localPort(), G4Protocol::port);
        QTRY_VERIFY(seen.reports.size() >= 3);
        QCOMPARE(fake.lines().value(1), QString("got Name"));
        QCOMPARE(fake.lines().value(2), QString("got Push 60 500 7"));
        const MicChannelReport& last = seen.reports.back();
        QCOMPARE(last.key, client.receiver().key() + "#1");
        QCOMPARE(last.name, QString("Lead Vox"));
        QVERIFY(last.hasSignal);
        QCOMPARE(seen.reachability.size(), size_t(1));
        QVERIFY(seen.reachability.front().first);
        client.stop();
        QTRY_VERIFY(fake.count("got Push 0 0 0") == 1);
    }

    void rfMuteAfterSignalShowsAsADropoutOnTheMonitor()
    {
        // The receiver's own push cycle of 500 ms, to measure what an operator would see.
        test::FakePeer fake(OSTREL_FAKE_G4, fakeArguments("signal-then-mute"));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        Keychain keychain;
        MicMonitor::Timings timings;
        timings.g4 = fastTimings(port);
        timings.g4.silenceLimit = 5.0;
        MicMonitor monitor(nullptr, keychain, timings, &now);
        monitor.addReceiver(receiverAt("127.0.0.1"), std::nullopt);
        qint64 redAt = 0;
        connect(&monitor, &MicMonitor::issuesChanged, this, [&] {
            if (!monitor.issues().empty() && monitor.issues().front().kind == MicIssueKind::dropout
                && redAt == 0)
                redAt = QDateTime::currentMSecsSinceEpoch();
        });
        monitor.setEnabled(true);
        QTRY_VERIFY_WITH_TIMEOUT(redAt != 0, 10000);
        const qint64 mutedAt = fake.waitFor("muted ").toLongLong();
        QCOMPARE(monitor.issues().size(), size_t(1));
        QCOMPARE(monitor.issues().front().name, QString("Lead Vox"));
        qInfo("RF mute to red row: %lld ms with a push cycle of 500 ms", redAt - mutedAt);
        QVERIFY(redAt - mutedAt < 600);
    }

    void aLowBatteryShowsAsALowBatteryIssue()
    {
        test::FakePeer fake(OSTREL_FAKE_G4, fakeArguments("low-battery", {"--cycle", "50"}));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        Keychain keychain;
        MicMonitor::Timings timings;
        timings.g4 = fastTimings(port);
        MicMonitor monitor(nullptr, keychain, timings, &now);
        monitor.addReceiver(receiverAt("127.0.0.1"), std::nullopt);
        monitor.setEnabled(true);
        QTRY_VERIFY(!monitor.issues().empty());
        QCOMPARE(monitor.issues().front().kind, MicIssueKind::lowBattery);
        QCOMPARE(monitor.channelNames(), QStringList {"Lead Vox"});
    }

    void aSilentReceiverIsNotRespondingAndIsAskedAgain()
    {
        test::FakePeer fake(OSTREL_FAKE_G4, fakeArguments("silence", {"--cycle", "50"}));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        Keychain keychain;
        MicMonitor::Timings timings;
        timings.g4 = fastTimings(port);
        const MicReceiver receiver = receiverAt("127.0.0.1", "Rack A");
        MicMonitor monitor(nullptr, keychain, timings, &now);
        monitor.addReceiver(receiver, std::nullopt);
        monitor.setEnabled(true);
        QVERIFY(!fake.waitFor("silent").isNull());
        const int namesBefore = fake.count("got Name");
        QTRY_VERIFY(!monitor.issues().empty());
        QCOMPARE(monitor.issues().front().kind, MicIssueKind::receiverOffline);
        QCOMPARE(monitor.issues().front().key, receiver.key());
        QCOMPARE(monitor.issues().front().name, QString("Lead Vox"));
        QTRY_VERIFY(fake.count("got Name") > namesBefore);
    }

    void exactlyTheSilenceLimitIsStillReachableOnlyMoreIsNot()
    {
        test::FakePeer fake(OSTREL_FAKE_G4, fakeArguments("silence", {"--cycle", "20"}));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        Date clock = now();
        auto timings = fastTimings(port);
        timings.silenceLimit = 5.0;
        G4ReceiverClient client(receiverAt("127.0.0.1"), timings, [&] { return clock; });
        Reports seen;
        seen.attach(client);
        client.start();
        QVERIFY(!fake.waitFor("silent").isNull());
        QTRY_VERIFY(client.isReachable());
        const Date heard = *client.status().lastHeard;
        clock = addingSeconds(heard, 5.0);
        QTest::qWait(100);
        QVERIFY(client.isReachable());
        clock = addingSeconds(heard, 5.001);
        QTRY_VERIFY(!client.isReachable());
        QCOMPARE(seen.reachability.back().first, false);
    }

    void garbageAndUnknownCommandsAreDroppedAndProveNothing()
    {
        test::FakePeer fake(OSTREL_FAKE_G4, fakeArguments("garbage", {"--cycle", "20"}));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        G4ReceiverClient client(receiverAt("127.0.0.1"), fastTimings(port), &now);
        Reports seen;
        seen.attach(client);
        client.start();
        QTRY_VERIFY(client.droppedDatagrams() >= 10);
        QVERIFY(seen.reports.empty());
        QVERIFY(seen.reachability.empty());
        QVERIFY(!client.status().lastHeard.has_value());
    }

    void aBusyControlPortFailsOnceThenAFreePortIsUsed()
    {
        QUdpSocket holder;
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, G4Protocol::port, QUdpSocket::DontShareAddress));
        test::FakePeer fake(OSTREL_FAKE_G4, fakeArguments("signal", {"--cycle", "50"}));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        auto timings = fastTimings(port);
        timings.restartDelayMs = 500;
        G4ReceiverClient client(receiverAt("127.0.0.1"), timings, &now);
        Reports seen;
        seen.attach(client);
        QElapsedTimer elapsed;
        elapsed.start();
        client.start();
        QVERIFY(!client.isStarted());
        QVERIFY(!client.bindsLocalPort());
        QTRY_VERIFY(client.isReachable());
        QVERIFY(elapsed.elapsed() >= 500);
        QVERIFY(client.localPort() != G4Protocol::port);
        QCOMPARE(fake.count("got Name"), 1);
    }

    void aFloodCostsLittleProcessorAndNoMemory()
    {
        test::FakePeer fake(
            OSTREL_FAKE_G4, fakeArguments("flood", {"--flood", "10000", "--seconds", "10"}));
        const quint16 port = quint16(fake.waitFor("port ").toUInt());
        Keychain keychain;
        MicMonitor::Timings timings;
        timings.g4 = fastTimings(port);
        timings.g4.silenceLimit = 5.0;
        MicMonitor monitor(nullptr, keychain, timings, &now);
        monitor.addReceiver(receiverAt("127.0.0.1"), std::nullopt);
        int reports = 0;
        monitor.setEnabled(true);
        QTRY_VERIFY(monitor.g4Client(monitor.receivers().front().id)->isReachable());
        const auto* client = monitor.g4Client(monitor.receivers().front().id);
        QTest::qWait(1000);
        const double cpuBefore = processCpuSeconds();
        const long memoryBefore = residentKilobytes();
        QElapsedTimer wall;
        wall.start();
        QVERIFY(!fake.waitFor("flooded ", 30000).isEmpty());
        const double cpu = processCpuSeconds() - cpuBefore;
        const double seconds = double(wall.elapsed()) / 1000.0;
        const long memoryGrowth = residentKilobytes() - memoryBefore;
        reports = int(client->status().lastHeard.has_value());
        qInfo("Flood of %s datagrams: %.1f %% of a core over %.1f s, memory growth %ld KiB",
            qPrintable(fake.waitFor("flooded ")), 100.0 * cpu / seconds, seconds, memoryGrowth);
        QVERIFY(reports == 1);
        QVERIFY(cpu / seconds < 0.10);
        QVERIFY(memoryGrowth < 2048);
    }
};

} // namespace ostrel

QTEST_GUILESS_MAIN(ostrel::G4LinkTest)
#include "G4LinkTest.moc"
