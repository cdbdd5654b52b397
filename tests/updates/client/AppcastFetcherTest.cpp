// The feed's download over real HTTP on loopback: a feed, a server error, no server, a server
// that never answers, and a feed too large to be one.
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

#include "FakeUpdateServer.h"
#include "updates/client/AppcastFetcher.h"

using namespace ostrel;
using namespace ostrel::testsupport;

class AppcastFetcherTest : public QObject {
    Q_OBJECT

private slots:
    void aServedFeedGivesItsReleases()
    {
        FakeUpdateServer server;
        server.answer(200, appcast({"1.0", "1.1"}));
        AppcastFetcher fetcher;
        QSignalSpy fetched(&fetcher, &AppcastFetcher::fetched);
        fetcher.fetch(server.feedUrl());
        QVERIFY(fetcher.isFetching());
        QVERIFY(fetched.wait(5000));
        const auto items = fetched.first().first().value<std::vector<AppcastItem>>();
        QCOMPARE(items.size(), size_t(2));
        QCOMPARE(items[1].version, QString("1.1"));
        QCOMPARE(items[1].downloadPage, QString("https://ostrel.app/download/1.1"));
        QVERIFY(!fetcher.isFetching());
    }

    void aServerErrorIsToldWithItsStatus()
    {
        FakeUpdateServer server;
        server.answer(404, "not found");
        AppcastFetcher fetcher;
        QSignalSpy failed(&fetcher, &AppcastFetcher::failed);
        fetcher.fetch(server.feedUrl());
        QVERIFY(failed.wait(5000));
        QCOMPARE(failed.first().first().toString(),
            QString("The update server answered with error 404."));
    }

    void noServerIsToldAsUnreachable()
    {
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const quint16 port = closed.serverPort();
        closed.close();
        AppcastFetcher fetcher;
        QSignalSpy failed(&fetcher, &AppcastFetcher::failed);
        fetcher.fetch(QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(port)));
        QVERIFY(failed.wait(5000));
        QVERIFY2(failed.first().first().toString().startsWith("The update server can't be reached"),
            qPrintable(failed.first().first().toString()));
    }

    void aServerThatNeverAnswersTimesOut()
    {
        FakeUpdateServer server;
        server.holdSilent();
        AppcastFetcher fetcher(std::chrono::milliseconds(300));
        QSignalSpy failed(&fetcher, &AppcastFetcher::failed);
        fetcher.fetch(server.feedUrl());
        QVERIFY(failed.wait(5000));
        QCOMPARE(
            failed.first().first().toString(), QString("The update server didn't answer in time."));
        QVERIFY(!fetcher.isFetching());
    }

    void aFeedTooLargeToBeOneIsRefused()
    {
        FakeUpdateServer server;
        server.answer(200, QByteArray(3 * 1024 * 1024, 'x'));
        AppcastFetcher fetcher;
        QSignalSpy failed(&fetcher, &AppcastFetcher::failed);
        fetcher.fetch(server.feedUrl());
        QVERIFY(failed.wait(5000));
        QCOMPARE(failed.first().first().toString(), QString("The update feed is too large."));
        QCOMPARE(failed.size(), 1);
    }

    void aNewFetchReplacesTheOneUnderWay()
    {
        FakeUpdateServer silent;
        silent.holdSilent();
        FakeUpdateServer server;
        server.answer(200, appcast({"2.0"}));
        AppcastFetcher fetcher;
        QSignalSpy fetched(&fetcher, &AppcastFetcher::fetched);
        QSignalSpy failed(&fetcher, &AppcastFetcher::failed);
        fetcher.fetch(silent.feedUrl());
        fetcher.fetch(server.feedUrl());
        QVERIFY(fetched.wait(5000));
        QTest::qWait(100);
        QCOMPARE(fetched.size(), 1);
        QCOMPARE(failed.size(), 0);
    }
};

QTEST_GUILESS_MAIN(AppcastFetcherTest)
#include "AppcastFetcherTest.moc"
