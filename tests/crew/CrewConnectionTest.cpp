// A crew connection over loopback sockets, against a plain socket that writes raw bytes.
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include "LoopbackPeer.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

void settle(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QTest::qWait(10);
}

int socketOption(qintptr descriptor, int level, int name)
{
    int value = -1;
    socklen_t size = sizeof value;
    if (getsockopt(static_cast<int>(descriptor), level, name, &value, &size) != 0) return -1;
    return value;
}

QString helloStation(const CrewMessage& message)
{
    const auto* hello = std::get_if<CrewMessages::Hello>(&message);
    return hello ? hello->station : QString();
}

} // namespace

class CrewConnectionTest : public QObject {
    Q_OBJECT

private slots:
    void readyComesOnceAfterStart()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        settle(50);
        QCOMPARE(pair.readyCount, 1);
        QVERIFY(pair.connection->isReady());
    }

    void keepAliveAndNoDelayAreSetOnTheSocket()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        const qintptr descriptor = pair.connection->socket()->socketDescriptor();
        QCOMPARE(socketOption(descriptor, SOL_SOCKET, SO_KEEPALIVE), 1);
        QCOMPARE(socketOption(descriptor, IPPROTO_TCP, TCP_NODELAY), 1);
        QCOMPARE(socketOption(descriptor, IPPROTO_TCP, TCP_KEEPIDLE), 5);
        QCOMPARE(socketOption(descriptor, IPPROTO_TCP, TCP_KEEPINTVL), 2);
        QCOMPARE(socketOption(descriptor, IPPROTO_TCP, TCP_KEEPCNT), 3);
    }

    void anOutgoingConnectionIsReadyOnceConnectedAndSetsTheSameOptions()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        auto* socket = new QTcpSocket;
        CrewConnection connection(socket);
        int ready = 0;
        connection.onReady = [&] {
            ++ready;
            connection.send(CrewMessages::Hello {"Stalls", CrewRole::secondary});
        };
        socket->connectToHost(QHostAddress::LocalHost, server.serverPort());
        connection.start();
        QVERIFY(server.waitForNewConnection(5000));
        std::unique_ptr<QTcpSocket> accepted(server.nextPendingConnection());
        FrameCollector collector(*accepted);
        QTRY_COMPARE(ready, 1);
        QTRY_COMPARE(collector.messages.size(), std::size_t(1));
        QCOMPARE(helloStation(collector.messages[0]), QString("Stalls"));
        const qintptr descriptor = socket->socketDescriptor();
        QCOMPARE(socketOption(descriptor, IPPROTO_TCP, TCP_KEEPIDLE), 5);
        QCOMPARE(socketOption(descriptor, IPPROTO_TCP, TCP_KEEPCNT), 3);
    }

    void closeCalledTwiceCallsOnCloseOnce()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        pair.connection->close();
        pair.connection->close();
        QCOMPARE(pair.closeCount, 1);
        QVERIFY(pair.connection->isClosed());
        QTRY_COMPARE(pair.peer.state(), QAbstractSocket::UnconnectedState);
        settle(50);
        QCOMPARE(pair.closeCount, 1);
    }

    void sendAfterCloseDoesNothing()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        FrameCollector collector(pair.peer);
        pair.connection->send(CrewMessages::Hello {"FOH", CrewRole::primary});
        QTRY_COMPARE(collector.messages.size(), std::size_t(1));
        pair.connection->close();
        pair.connection->send(CrewMessages::Hello {"Again", CrewRole::primary});
        settle(100);
        QCOMPARE(collector.messages.size(), std::size_t(1));
        QCOMPARE(pair.closeCount, 1);
    }

    void twoFramesInOneSegmentAreReadOneAfterTheOther()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        pair.write(framedHello("A") + framedHello("B"));
        QTRY_COMPARE(pair.received.size(), std::size_t(2));
        QCOMPARE(helloStation(pair.received[0]), QString("A"));
        QCOMPARE(helloStation(pair.received[1]), QString("B"));
    }

    void aFrameSplitOverManyWritesIsReadWhole()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        const QByteArray frame = framedHello("Backstage left");
        for (qsizetype offset = 0; offset < frame.size(); offset += 3) {
            pair.write(frame.mid(offset, 3));
            QTest::qWait(2);
            if (offset + 3 < frame.size()) QCOMPARE(pair.received.size(), std::size_t(0));
        }
        QTRY_COMPARE(pair.received.size(), std::size_t(1));
        QCOMPARE(helloStation(pair.received[0]), QString("Backstage left"));
    }

    void aLargeFrameIsReadWhole()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        CrewMessages::Roster roster;
        for (int index = 0; index < 20000; ++index)
            roster.stations.append(QString("Station %1").arg(index));
        pair.write(*CrewFraming::frame(roster));
        QTRY_COMPARE_WITH_TIMEOUT(pair.received.size(), std::size_t(1), 10000);
        QCOMPARE(std::get<CrewMessages::Roster>(pair.received[0]).stations.size(), 20000);
    }

    void aZeroLengthFrameNeitherCallsOnMessageNorDisturbsTheNext()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        pair.write(header(0));
        settle(50);
        QCOMPARE(pair.received.size(), std::size_t(0));
        pair.write(header(0) + framedHello("After") + header(0));
        QTRY_COMPARE(pair.received.size(), std::size_t(1));
        QCOMPARE(helloStation(pair.received[0]), QString("After"));
        settle(50);
        QCOMPARE(pair.closeCount, 0);
    }

    void anUnreadableMessageIsLoggedAndDroppedAndReadingGoesOn()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        QTest::ignoreMessage(QtInfoMsg, "Ignored an unreadable crew message");
        QTest::ignoreMessage(QtInfoMsg, "Ignored an unreadable crew message");
        const QByteArray broken("{\"hello\":");
        const QByteArray twoKeys("{\"roster\":{\"_0\":[]},\"hello\":{}}");
        pair.write(header(broken.size()) + broken + header(twoKeys.size()) + twoKeys
            + framedHello("Still here"));
        QTRY_COMPARE(pair.received.size(), std::size_t(1));
        QCOMPARE(helloStation(pair.received[0]), QString("Still here"));
        QCOMPARE(pair.closeCount, 0);
    }

    void aHeaderOverTheLimitClosesTheConnection()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        pair.write(header(4'194'305) + framedHello("Never read"));
        QTRY_COMPARE(pair.closeCount, 1);
        QCOMPARE(pair.received.size(), std::size_t(0));
        QTRY_COMPARE(pair.peer.state(), QAbstractSocket::UnconnectedState);
    }

    void aHeaderOfExactlyTheLimitIsAccepted()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        pair.write(header(4'194'304) + QByteArray(1000, ' '));
        settle(100);
        QCOMPARE(pair.closeCount, 0);
        QCOMPARE(pair.connection->reader().announcedLength(), 4'194'304u);
    }

    void aPeerThatClosesIsReadToTheEndThenClosed()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        pair.write(framedHello("Last words"));
        pair.peer.disconnectFromHost();
        QTRY_COMPARE(pair.closeCount, 1);
        QCOMPARE(pair.received.size(), std::size_t(1));
        QCOMPARE(helloStation(pair.received[0]), QString("Last words"));
    }

    void aConnectionThatCannotBeMadeFailsAndCloses()
    {
        quint16 port = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
            port = probe.serverPort();
        }
        auto* socket = new QTcpSocket;
        CrewConnection connection(socket);
        int closed = 0;
        int ready = 0;
        connection.onClose = [&] { ++closed; };
        connection.onReady = [&] { ++ready; };
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Crew connection failed: .+"));
        socket->connectToHost(QHostAddress::LocalHost, port);
        connection.start();
        QTRY_COMPARE(closed, 1);
        QCOMPARE(ready, 0);
    }

    void aPeerThatStopsReadingIsDroppedOnceItsBacklogPassesTheLimit()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        // Qt stops taking the peer's bytes from the system, so the kernel's buffers fill and the
        // rest waits in the connection's socket.
        pair.peer.setReadBufferSize(1);
        CrewMessages::Roster roster;
        for (int index = 0; index < 50'000; ++index)
            roster.stations.append(QString("Station %1").arg(index));
        const qint64 frameSize = CrewFraming::frame(roster)->size();
        QTest::ignoreMessage(QtCriticalMsg, "Crew connection failed: the peer has stopped reading");
        qint64 sent = 0;
        while (pair.closeCount == 0 && sent < 200 * 1024 * 1024) {
            pair.connection->send(roster);
            sent += frameSize;
            QTest::qWait(1);
        }
        QCOMPARE(pair.closeCount, 1);
        QVERIFY(sent > CrewConnection::sendBacklogLimit);
    }

    void aPeerThatReadsIsNotDroppedForTheSameVolume()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        qint64 drained = 0;
        connect(&pair.peer, &QTcpSocket::readyRead, [&] { drained += pair.peer.readAll().size(); });
        CrewMessages::Roster roster;
        for (int index = 0; index < 50'000; ++index)
            roster.stations.append(QString("Station %1").arg(index));
        const qint64 frameSize = CrewFraming::frame(roster)->size();
        for (qint64 sent = 0; sent < 40 * 1024 * 1024; sent += frameSize) {
            pair.connection->send(roster);
            QTest::qWait(1);
        }
        QTRY_VERIFY_WITH_TIMEOUT(drained >= 40 * 1024 * 1024, 20000);
        QCOMPARE(pair.closeCount, 0);
    }

    void anOnCloseThatDeletesTheConnectionIsSafe()
    {
        AcceptedPair pair;
        QVERIFY(pair.open());
        pair.connection->onMessage = [&](const CrewMessage&) { pair.connection->close(); };
        pair.connection->onClose = [&] { pair.connection.release()->deleteLater(); };
        pair.write(framedHello("A") + framedHello("B"));
        QTRY_VERIFY(!pair.connection);
        settle(50);
    }
};

QTEST_GUILESS_MAIN(CrewConnectionTest)
#include "CrewConnectionTest.moc"
