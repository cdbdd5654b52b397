// The EW-DX link, its pinned certificates and the keyring, against the project's fake receiver
// over HTTPS on loopback. Run inside a private keyring (tests/scripts/with-keyring.sh).
#include <QCryptographicHash>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QTemporaryDir>
#include <QTest>

#include "FakePeer.h"
#include "mics/link/EWDXReceiverClient.h"
#include "mics/link/Keychain.h"
#include "mics/link/MicMonitor.h"
#include "settings/SettingsStore.h"

namespace ostrel {

namespace {

Date now()
{
    return std::chrono::system_clock::now();
}

const QString password = QStringLiteral("s3cret-pass");

QString certificate(const QString& name)
{
    return QStringLiteral(OSTREL_EWDX_CERTIFICATES "/") + name;
}

QByteArray derOf(const QString& name)
{
    QFile file(certificate(name + ".pem"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QSslCertificate(&file, QSsl::Pem).toDer();
}

std::unique_ptr<test::FakePeer> startFake(const QString& certificateName, QStringList more = {})
{
    auto fake = std::make_unique<test::FakePeer>(QStringLiteral("python3"),
        QStringList {OSTREL_FAKE_EWDX, "--cert", certificate(certificateName + ".pem"), "--key",
            certificate(certificateName + ".key"), "--password", password}
            + more);
    return fake;
}

struct Seen {
    std::vector<MicChannelReport> reports;
    std::vector<std::pair<bool, QString>> reachability;
    std::vector<std::optional<QString>> problems;

    void attach(EWDXReceiverClient& client)
    {
        client.onReport = [this](const MicChannelReport& report) { reports.push_back(report); };
        client.onReachabilityChange = [this](bool reachable, const QString& name) {
            reachability.emplace_back(reachable, name);
        };
        client.onProblem = [this](const std::optional<QString>& p) { problems.push_back(p); };
    }
    bool reachable() const { return !reachability.empty() && reachability.back().first; }
};

EWDXReceiverClient::Timings fastTimings()
{
    EWDXReceiverClient::Timings timings;
    timings.retryDelayMs = 300;
    return timings;
}

MicReceiver receiverOn(quint16 port, const QString& label = QString())
{
    return MicReceiver {QUuid::createUuid(), MicReceiverKind::ewdx,
        QStringLiteral("127.0.0.1:%1").arg(port), label};
}

QString secretToolLookup(const QUuid& id)
{
    QProcess tool;
    tool.start("secret-tool", {"lookup", "server", Keychain::service, "user", micReceiverKey(id)});
    tool.waitForFinished(5000);
    return QString::fromUtf8(tool.readAllStandardOutput());
}

} // namespace

class EWDXLinkTest : public QObject {
    Q_OBJECT

    QTemporaryDir folder;
    std::unique_ptr<QSettings> settings;
    std::unique_ptr<SettingsStore> store;

private slots:
    void init()
    {
        store.reset();
        settings = std::make_unique<QSettings>(
            folder.filePath(QUuid::createUuid().toString() + ".ini"), QSettings::IniFormat);
        store = std::make_unique<SettingsStore>(*settings);
    }

    void pinsTheFirstCertificateSubscribesAndReportsChannels()
    {
        auto fake = startFake("first");
        const quint16 port = quint16(fake->waitFor("port ").toUInt());
        CertificatePins pins(store.get());
        EWDXReceiverClient client(receiverOn(port, "Rack label"), password, pins, fastTimings());
        Seen seen;
        seen.attach(client);
        client.start();
        QTRY_VERIFY(seen.reachable());
        QCOMPARE(seen.reachability.back().second, QString("Rack DX"));
        QCOMPARE(store->text("ewdxCertificate.127.0.0.1"),
            QString::fromLatin1(
                QCryptographicHash::hash(derOf("first"), QCryptographicHash::Sha256).toHex()));
        QVERIFY(!fake->waitFor("subscribed ").isEmpty());
        QCOMPARE(fake->waitFor("subscribed "), QString("8"));
        QVERIFY(fake->waitFor("GET /api/ssc/state/subscriptions").contains("text/event-stream"));
        QVERIFY(fake->waitFor("PUT /api/ssc/state/subscriptions/")
                    .contains("[\"/channel/0/warnings\",\"/transmitters/0/warnings\",\"/channel/"
                              "0\",\"/channel/0/signalQualityIndicator\",\"/channel/1/warnings\""));
        QVERIFY(
            fake->waitFor("PUT /api/ssc/state/subscriptions/").contains("type=application/json"));
        QCOMPARE(seen.problems.size(), size_t(1));
        QVERIFY(!seen.problems.front().has_value());

        fake->write(R"({"/channel/0":{"name":"Lead"},"/channel/0/warnings":[]})");
        QTRY_VERIFY(!seen.reports.empty());
        QCOMPARE(seen.reports.back().key, client.keyPrefix() + "1");
        QCOMPARE(seen.reports.back().name, QString("Lead"));
        QVERIFY(seen.reports.back().hasSignal);
        fake->write(
            R"({"/api/channel/1/warnings":["NoLink"],"/transmitters/1/warnings":["LowBattery"]})");
        QTRY_COMPARE(seen.reports.back().key, client.keyPrefix() + "2");
        QCOMPARE(seen.reports.back().name, QString("Rack DX 2"));
        QVERIFY(!seen.reports.back().hasSignal);
        QVERIFY(seen.reports.back().lowBattery);
        const size_t before = seen.reports.size();
        fake->write("[not json");
        fake->write("raw : a comment\\n\\n");
        fake->write(R"({"/channel/x/warnings":[]})");
        QTRY_VERIFY(client.droppedEvents() >= 2);
        QCOMPARE(seen.reports.size(), before);
        QVERIFY(client.isReachable());
    }

    void aFourChannelProductSubscribesFourChannels()
    {
        auto fake = startFake("first", {"--product", "EW-DX EM 4ch Dante"});
        const quint16 port = quint16(fake->waitFor("port ").toUInt());
        CertificatePins pins(store.get());
        EWDXReceiverClient client(receiverOn(port), password, pins, fastTimings());
        client.start();
        QCOMPARE(fake->waitFor("subscribed "), QString("16"));
    }

    void aWrongPasswordIsRejectedWithItsText()
    {
        auto fake = startFake("first");
        const quint16 port = quint16(fake->waitFor("port ").toUInt());
        CertificatePins pins(store.get());
        EWDXReceiverClient client(receiverOn(port), "wrong", pins, fastTimings());
        Seen seen;
        seen.attach(client);
        client.start();
        QTRY_VERIFY(!seen.problems.empty());
        QCOMPARE(
            seen.problems.back(), std::optional<QString>(EWDXReceiverClient::passwordRejectedText));
        QVERIFY(!fake->waitFor("rejected GET /api/device/identity").isNull());
        QVERIFY(seen.reachability.empty());
        // Retried at the fixed delay.
        QTRY_VERIFY(fake->count("rejected GET") >= 2);
    }

    void theOtherFormOfPathsIsTriedWhenTheFirstIsRefused()
    {
        auto fake = startFake("first", {"--accepts", "api"});
        const quint16 port = quint16(fake->waitFor("port ").toUInt());
        CertificatePins pins(store.get());
        EWDXReceiverClient client(receiverOn(port), password, pins, fastTimings());
        client.start();
        QCOMPARE(fake->waitFor("subscribed "), QString("8"));
        QCOMPARE(fake->count("PUT "), 2);
    }

    void aSubscriptionRefusedInBothFormsIsAProblem()
    {
        auto fake = startFake("first", {"--accepts", "none"});
        const quint16 port = quint16(fake->waitFor("port ").toUInt());
        CertificatePins pins(store.get());
        EWDXReceiverClient client(receiverOn(port), password, pins, fastTimings());
        Seen seen;
        seen.attach(client);
        client.start();
        QTRY_VERIFY(!seen.problems.empty() && seen.problems.back().has_value());
        QCOMPARE(*seen.problems.back(), EWDXReceiverClient::subscriptionRefusedText);
        QTRY_VERIFY(!seen.reachable());
    }

    void aCloseEventIsNoErrorAndTheClientReconnects()
    {
        auto fake = startFake("first");
        const quint16 port = quint16(fake->waitFor("port ").toUInt());
        CertificatePins pins(store.get());
        EWDXReceiverClient client(receiverOn(port), password, pins, fastTimings());
        Seen seen;
        seen.attach(client);
        client.start();
        QTRY_VERIFY(seen.reachable());
        QVERIFY(!fake->waitFor("subscribed").isNull());
        fake->write("close");
        QTRY_VERIFY(!seen.reachable());
        QVERIFY(std::none_of(seen.problems.begin(), seen.problems.end(),
            [](const auto& p) { return p.has_value(); }));
        QTRY_VERIFY(seen.reachable());
        QCOMPARE(seen.reachability.size(), size_t(3));
    }

    void aChangedCertificateIsRefusedUntilItsPinIsCleared()
    {
        CertificatePins pins(store.get());
        auto first = startFake("first");
        const quint16 port = quint16(first->waitFor("port ").toUInt());
        {
            EWDXReceiverClient client(receiverOn(port), password, pins, fastTimings());
            client.start();
            QTRY_VERIFY(client.isReachable());
        }
        first.reset();
        auto second = startFake("second", {"--port", QString::number(port)});
        QCOMPARE(second->waitFor("port ").toUInt(), uint(port));
        EWDXReceiverClient client(receiverOn(port), password, pins, fastTimings());
        Seen seen;
        seen.attach(client);
        client.start();
        QTest::qWait(1500);
        QVERIFY(seen.reachability.empty());
        QVERIFY(seen.reports.empty());
        QVERIFY(std::none_of(seen.problems.begin(), seen.problems.end(),
            [](const auto& p) { return p.has_value(); }));
        QCOMPARE(second->count("GET "), 0);
        pins.clear("127.0.0.1");
        QTRY_VERIFY(seen.reachable());
        QCOMPARE(store->text("ewdxCertificate.127.0.0.1"),
            QString::fromLatin1(
                QCryptographicHash::hash(derOf("second"), QCryptographicHash::Sha256).toHex()));
    }

    void thePasswordLivesInTheKeyringOnlyAndLeavesWithItsReceiver()
    {
        auto fake = startFake("first");
        const quint16 port = quint16(fake->waitFor("port ").toUInt());
        Keychain keychain;
        MicMonitor::Timings timings;
        timings.ewdx = fastTimings();
        MicMonitor monitor(store.get(), keychain, timings, &now);
        monitor.setEnabled(true);
        const MicReceiver receiver = receiverOn(port, "Rack B");
        monitor.addReceiver(receiver, password);
        QTRY_VERIFY(
            monitor.ewdxClient(receiver.id) && monitor.ewdxClient(receiver.id)->isReachable());
        QCOMPARE(secretToolLookup(receiver.id), password);
        store->flush();
        settings->sync();
        QFile file(settings->fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray stored = file.readAll();
        QVERIFY(stored.contains("micReceivers"));
        QVERIFY(!stored.contains(password.toUtf8()));
        QVERIFY(!QFile::exists(
            qEnvironmentVariable("XDG_CONFIG_HOME") + "/com.dunmere.ostrel.ewdx.conf"));

        fake->write(R"({"/channel/0/warnings":[]})");
        QTRY_COMPARE(monitor.channelNames(), QStringList {"Rack DX 1"});
        fake->write(R"({"/channel/0/warnings":["NoLink"]})");
        QTRY_VERIFY(!monitor.issues().empty());
        QCOMPARE(monitor.issues().front().kind, MicIssueKind::dropout);

        monitor.removeReceiver(receiver.id);
        QVERIFY(monitor.issues().empty());
        QTRY_VERIFY(secretToolLookup(receiver.id).isEmpty());
    }

    void aReceiverWithoutAPasswordAsksForOne()
    {
        Keychain keychain;
        MicMonitor monitor(store.get(), keychain, {}, &now);
        const MicReceiver receiver = receiverOn(1);
        monitor.addReceiver(receiver, QString());
        monitor.setEnabled(true);
        QTRY_COMPARE(monitor.problem(receiver.id), MicMonitor::missingPasswordText);
        QVERIFY(!monitor.ewdxClient(receiver.id));
    }

    // Run alone in a session bus without a keyring (see CMakeLists.txt).
    void anUnreachableKeyringIsToldInTheProblemText()
    {
        if (qEnvironmentVariable("OSTREL_KEYRING") != "none")
            QSKIP("needs a bus without a keyring");
        Keychain keychain;
        MicMonitor monitor(store.get(), keychain, {}, &now);
        const MicReceiver receiver = receiverOn(1);
        monitor.addReceiver(receiver, password);
        monitor.setEnabled(true);
        QTRY_VERIFY2_WITH_TIMEOUT(
            monitor.problem(receiver.id).startsWith("Ostrel Live couldn't reach the keyring"),
            qPrintable(monitor.problem(receiver.id)), 15000);
        qInfo("%s", qPrintable(monitor.problem(receiver.id)));
        QVERIFY(!QFile::exists(
            qEnvironmentVariable("XDG_CONFIG_HOME") + "/com.dunmere.ostrel.ewdx.conf"));
    }
};

} // namespace ostrel

QTEST_GUILESS_MAIN(ostrel::EWDXLinkTest)
#include "EWDXLinkTest.moc"
