// The update check of the station against a feed served on loopback: newer, equal and older
// releases, a malformed feed and no network, the checks the user asks for and the automatic
// ones, and a station that has no updater at all.
#include <QSettings>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include "FakeUpdateServer.h"
#include "station/AppUpdater.h"
#include "updates/UpdateFeed.h"

using namespace ostrel;
using namespace ostrel::testsupport;
using namespace std::chrono_literals;

class AppUpdaterTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<QSettings> settings;
    std::unique_ptr<SettingsStore> store;
    std::unique_ptr<UpdateSettings> updates;

    std::unique_ptr<AppUpdater> make(const QUrl& feed, AppUpdater::Timings timings = {},
        QString version = QStringLiteral("1.2"), bool enabled = true)
    {
        return std::make_unique<AppUpdater>(
            enabled, *updates, feed.toString(), std::move(version), timings);
    }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        settings = std::make_unique<QSettings>(folder->filePath("s.ini"), QSettings::IniFormat);
        store = std::make_unique<SettingsStore>(*settings);
        updates = std::make_unique<UpdateSettings>(*store);
    }

    void cleanup()
    {
        updates.reset();
        store.reset();
        settings.reset();
    }

    void aNewerReleaseIsOfferedWithItsDownloadPage()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"1.1", "1.3", "1.2"}));
        auto updater = make(server.feedUrl());
        QVERIFY(updater->isAvailable());
        QVERIFY(updater->canCheckForUpdates());
        updater->checkForUpdates();
        QVERIFY(!updater->canCheckForUpdates()); // one check at a time
        QTRY_VERIFY(updater->isPresenting());
        QVERIFY(updater->hasUpdate());
        QCOMPARE(updater->title(), QString("A new version of Ostrel Live is available"));
        QVERIFY2(updater->detail().contains("Ostrel Live 1.3 is now available (you have 1.2)"),
            qPrintable(updater->detail()));
        QCOMPARE(updater->downloadPage(), QString("https://ostrel.app/download/1.3"));
        QCOMPARE(updater->releaseNotes(), QString("https://ostrel.app/notes/1.3"));
        QVERIFY(updater->canCheckForUpdates());
        QVERIFY(updates->lastCheck().has_value());
        updater->dismiss();
        QVERIFY(!updater->isPresenting());
    }

    void theSameVersionIsUpToDate()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"1.0", "1.2"}));
        auto updater = make(server.feedUrl());
        updater->checkForUpdates();
        QTRY_VERIFY(updater->isPresenting());
        QVERIFY(!updater->hasUpdate());
        QCOMPARE(updater->title(), QString("You're up to date"));
        QCOMPARE(updater->detail(), QString("Ostrel Live 1.2 is the newest version available."));
        QVERIFY(updater->downloadPage().isEmpty());
    }

    void anOlderFeedIsUpToDateToo()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"0.9", "1.1"}));
        auto updater = make(server.feedUrl());
        updater->checkForUpdates();
        QTRY_VERIFY(updater->isPresenting());
        QVERIFY(!updater->hasUpdate());
        QCOMPARE(updater->title(), QString("You're up to date"));
    }

    void aMalformedFeedIsToldAndOffersNothing()
    {
        FakeUpdateServer server;
        server.answer(200, "<html>maintenance</html>");
        auto updater = make(server.feedUrl());
        updater->checkForUpdates();
        QTRY_VERIFY(updater->isPresenting());
        QVERIFY(!updater->hasUpdate());
        QCOMPARE(updater->title(), QString("Couldn't check for updates"));
        QCOMPARE(updater->detail(), QString("The update feed isn't an appcast."));
        QVERIFY(!updates->lastCheck().has_value());
    }

    void noNetworkIsToldInPlainWords()
    {
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const QUrl feed(
            QStringLiteral("http://127.0.0.1:%1/ostrel/feed.xml").arg(closed.serverPort()));
        closed.close();
        auto updater = make(feed);
        updater->checkForUpdates();
        QTRY_VERIFY(updater->isPresenting());
        QCOMPARE(updater->title(), QString("Couldn't check for updates"));
        QVERIFY2(updater->detail().startsWith("The update server can't be reached"),
            qPrintable(updater->detail()));
        QVERIFY(updater->canCheckForUpdates());
    }

    void automaticChecksAreOffUntilTurnedOnAndKeptInTheSettings()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"1.3"}));
        auto updater = make(server.feedUrl(), {50ms, 24h, 5s});
        QVERIFY(!updater->checksAutomatically());
        QTest::qWait(200);
        QCOMPARE(server.requests(), 0);
        QSignalSpy changed(updater.get(), &AppUpdater::checksAutomaticallyChanged);
        updater->setChecksAutomatically(true);
        QCOMPARE(changed.size(), 1);
        QVERIFY(updates->checksAutomatically());
        store->flush();
        QCOMPARE(settings->value("SUEnableAutomaticChecks").toBool(), true);
        QTRY_COMPARE(server.requests(), 1);
        QTRY_VERIFY(updater->isPresenting());
        QVERIFY(updater->hasUpdate());
    }

    void anAutomaticCheckSaysNothingWhenThereIsNothingNew()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"1.2"}));
        updates->setChecksAutomatically(true);
        auto updater = make(server.feedUrl(), {50ms, 24h, 5s});
        QTRY_COMPARE(server.requests(), 1);
        QTRY_VERIFY(updates->lastCheck().has_value());
        QTest::qWait(100);
        QVERIFY(!updater->isPresenting());
        server.answer(500, "");
        QTest::qWait(200);
        QCOMPARE(server.requests(), 1); // the next one is a day away
    }

    void anAutomaticCheckWaitsForTheIntervalSinceTheLastOne()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"1.3"}));
        updates->setChecksAutomatically(true);
        updates->setLastCheck(std::chrono::system_clock::now());
        auto updater = make(server.feedUrl(), {20ms, 400ms, 5s});
        QTest::qWait(150);
        QCOMPARE(server.requests(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(server.requests(), 1, 3000);
    }

    void aFailedAutomaticCheckStaysQuiet()
    {
        FakeUpdateServer server;
        server.answer(503, "busy");
        updates->setChecksAutomatically(true);
        auto updater = make(server.feedUrl(), {20ms, 24h, 5s});
        QTRY_COMPARE(server.requests(), 1);
        QTRY_VERIFY(updater->canCheckForUpdates());
        QTest::qWait(200);
        QVERIFY(!updater->isPresenting());
        QCOMPARE(server.requests(), 1); // not again until the interval has passed
    }

    void askingDuringAnAutomaticCheckPresentsItsOutcome()
    {
        FakeUpdateServer server;
        server.holdSilent();
        updates->setChecksAutomatically(true);
        auto updater = make(server.feedUrl(), {10ms, 24h, 300ms});
        QTRY_COMPARE(server.requests(), 1);
        updater->checkForUpdates();
        QTRY_VERIFY(updater->isPresenting());
        QCOMPARE(updater->detail(), QString("The update server didn't answer in time."));
    }

    void thePlaceholderFeedGivesNoUpdater()
    {
        auto updater = make(QUrl(QString::fromLatin1(UpdateFeed::placeholder)));
        QVERIFY(!updater->isAvailable());
        QVERIFY(!updater->canCheckForUpdates());
        QVERIFY(!updater->checksAutomatically());
        updater->setChecksAutomatically(true);
        QVERIFY(!updater->checksAutomatically());
        QVERIFY(!updates->checksAutomatically());
        updater->checkForUpdates();
        QVERIFY(!updater->isPresenting());
    }

    void anEmptyFeedGivesNoUpdaterEvenWithChecksSwitchedOn()
    {
        updates->setChecksAutomatically(true);
        auto updater = make(QUrl());
        QVERIFY(!updater->isAvailable());
        QVERIFY(!updater->canCheckForUpdates());
        QVERIFY(!updater->checksAutomatically());
    }

    void aStationThatIsNotLiveHasNoUpdaterWhateverTheFeed()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"9.0"}));
        updates->setChecksAutomatically(true);
        auto updater = make(server.feedUrl(), {10ms, 24h, 5s}, "1.0", false);
        QVERIFY(!updater->isAvailable());
        updater->checkForUpdates();
        QTest::qWait(100);
        QCOMPARE(server.requests(), 0);
        QVERIFY(!updater->checksAutomatically());
    }
};

QTEST_GUILESS_MAIN(AppUpdaterTest)
#include "AppUpdaterTest.moc"
