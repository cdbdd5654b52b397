// A primary's port under hostile input from plain sockets: oversized headers, random bytes, a
// peer that dribbles, unreadable JSON, empty frames and a crowd. Meanwhile an honest secondary,
// found through the real avahi-daemon, must keep receiving ten intervals and two states a second,
// and no peer may cost the primary more than the frame it is reading.
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include "CrewFixtures.h"
#include "LoopbackPeer.h"
#include "crew/CrewConnection.h"
#include "network/CrewFraming.h"
#include "support/SteadyInterval.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

constexpr int linkWait = 15000;

void settle(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QTest::qWait(5);
}

// The primary sharing as a station does, an honest secondary counting what arrives, and a check
// of every connection's buffers at each tick.
struct Arena {
    std::unique_ptr<CrewLink> primary = makeLink();
    std::unique_ptr<CrewLink> honest = makeLink();
    QTimer shareTimer;
    QTimer boundsTimer;
    int ticks = 0;
    int intervals = 0;
    int states = 0;
    // Buffers found above what the frame being read allows, and the most any peer held.
    int overruns = 0;
    qint64 mostReserved = 0;
    qint64 mostInSocket = 0;

    bool open()
    {
        primary->configure(CrewRole::primary, "FOH Fortress", "");
        honest->configure(CrewRole::secondary, "Honest", "FOH Fortress");
        honest->onInterval = [this](const MeasurementInterval&) { ++intervals; };
        honest->onState = [this](const MirrorState&) { ++states; };
        shareTimer.setInterval(100);
        QObject::connect(&shareTimer, &QTimer::timeout, [this] {
            primary->share(steadyInterval(85.0));
            if (++ticks % 5 == 0) {
                MirrorState state;
                state.station = "FOH Fortress";
                primary->share(state);
            }
        });
        shareTimer.start();
        boundsTimer.setInterval(5);
        QObject::connect(&boundsTimer, &QTimer::timeout, [this] { checkBounds(); });
        boundsTimer.start();
        return QTest::qWaitFor(
            [this] { return isConnectedTo(*honest, "FOH Fortress") && intervals > 0; }, linkWait);
    }

    void checkBounds()
    {
        for (const CrewConnection* connection : primary->findChildren<CrewConnection*>()) {
            const CrewFrameReader& reader = connection->reader();
            const qint64 allowed = 4 + static_cast<qint64>(reader.announcedLength());
            if (reader.bufferedBytes() > allowed || reader.reservedBytes() > allowed + 16)
                ++overruns;
            mostReserved = std::max<qint64>(mostReserved, reader.reservedBytes());
            if (connection->socket())
                mostInSocket
                    = std::max<qint64>(mostInSocket, connection->socket()->bytesAvailable());
        }
    }

    // The honest secondary got about what was shared over `milliseconds`, and is live.
    bool honestKeptUp(int intervalsBefore, int statesBefore, int milliseconds) const
    {
        const int expected = milliseconds / 100;
        return intervals - intervalsBefore >= expected * 7 / 10
            && states - statesBefore >= expected / 5 * 7 / 10 && honest->isReceiving()
            && isConnectedTo(*honest, "FOH Fortress");
    }

    int attached() const
    {
        return static_cast<int>(primary->findChildren<CrewConnection*>().size());
    }
};

std::unique_ptr<QTcpSocket> connectTo(quint16 port)
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost(QHostAddress::LocalHost, port);
    return socket;
}

} // namespace

class HostilePeersTest : public QObject {
    Q_OBJECT

private slots:
    void init() { QVERIFY(noCrewAnnounced()); }

    void aHeaderAnnouncingMoreThanFourMebibytesIsClosed()
    {
        Arena arena;
        QVERIFY(arena.open());
        const int intervals = arena.intervals;
        const int states = arena.states;
        auto peer = connectTo(arena.primary->listeningPort());
        QVERIFY(peer->waitForConnected(5000));
        QTRY_COMPARE(arena.attached(), 2);
        peer->write(header(4'194'305) + QByteArray(100'000, 'x'));
        QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
        QTRY_COMPARE(arena.attached(), 1);
        settle(1000);
        QVERIFY(arena.honestKeptUp(intervals, states, 1000));
        QCOMPARE(arena.overruns, 0);
    }

    void randomBytesAreClosedWithoutHoldingMoreThanAFrame()
    {
        Arena arena;
        QVERIFY(arena.open());
        const int intervals = arena.intervals;
        const int states = arena.states;
        std::vector<std::unique_ptr<QTcpSocket>> peers;
        QRandomGenerator random(20261125);
        for (int index = 0; index < 20; ++index) {
            peers.push_back(connectTo(arena.primary->listeningPort()));
            QVERIFY(peers.back()->waitForConnected(5000));
            QByteArray noise(64 * 1024, '\0');
            random.fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
            // A few start with a plausible header, so that their noise is read as a body.
            if (index % 5 == 0) noise.replace(0, 4, header(32 * 1024));
            peers.back()->write(noise);
        }
        settle(1500);
        int closed = 0;
        for (const auto& peer : peers)
            if (peer->state() == QAbstractSocket::UnconnectedState) ++closed;
        // A plausible header followed by noise: the body is dropped and the noise after it read
        // as the next header, which is far too long.
        QCOMPARE(closed, 20);
        QTRY_COMPARE(arena.attached(), 1);
        QVERIFY(arena.honestKeptUp(intervals, states, 1500));
        QCOMPARE(arena.overruns, 0);
        QVERIFY(arena.mostInSocket <= CrewConnection::socketReadBuffer);
    }

    void aPeerThatDribblesCostsOnlyWhatItSentAndIsReadInTheEnd()
    {
        Arena arena;
        QVERIFY(arena.open());
        const int intervals = arena.intervals;
        const int states = arena.states;
        auto peer = connectTo(arena.primary->listeningPort());
        QVERIFY(peer->waitForConnected(5000));
        // A 4 MiB body announced, then one byte a tick: the room grows with what came.
        auto hog = connectTo(arena.primary->listeningPort());
        QVERIFY(hog->waitForConnected(5000));
        hog->write(header(4'194'304));
        const QByteArray hello = framedHello("Dribbler");
        qsizetype sent = 0;
        QTimer tick;
        tick.setInterval(20);
        QObject::connect(&tick, &QTimer::timeout, [&] {
            if (sent < hello.size()) peer->write(hello.mid(sent, 1));
            hog->write("{");
            ++sent;
        });
        tick.start();
        QTRY_VERIFY_WITH_TIMEOUT(arena.primary->stations().contains("Dribbler"), 20000);
        tick.stop();
        QCOMPARE(peer->state(), QAbstractSocket::ConnectedState);
        QCOMPARE(hog->state(), QAbstractSocket::ConnectedState);
        QVERIFY2(arena.mostReserved <= 4 * sent + 64,
            qPrintable(QString("reserved %1 for %2 bytes").arg(arena.mostReserved).arg(sent)));
        QVERIFY(arena.honestKeptUp(intervals, states, static_cast<int>(sent) * 20));
        QCOMPARE(arena.overruns, 0);
    }

    void invalidJsonInAValidFrameIsDroppedAndTheConnectionReadsOn()
    {
        Arena arena;
        QVERIFY(arena.open());
        auto peer = connectTo(arena.primary->listeningPort());
        QVERIFY(peer->waitForConnected(5000));
        const QByteArray bodies[] = {"{\"hello\":{\"station\":", "not json at all", "[]",
            "{\"hello\":{\"station\":\"X\",\"role\":\"captain\"}}", QByteArray(3000, '{'),
            "{\"chat\":{\"_0\":{\"id\":\"nope\"}}}"};
        QByteArray stream;
        for (const QByteArray& body : bodies) {
            QTest::ignoreMessage(QtInfoMsg, "Ignored an unreadable crew message");
            stream += header(body.size()) + body;
        }
        peer->write(stream + framedHello("Survivor"));
        QTRY_VERIFY(arena.primary->stations().contains("Survivor"));
        QCOMPARE(peer->state(), QAbstractSocket::ConnectedState);
        QVERIFY(arena.primary->messages().empty());
        QCOMPARE(arena.overruns, 0);
    }

    void zeroLengthFramesAreSkipped()
    {
        Arena arena;
        QVERIFY(arena.open());
        const int intervals = arena.intervals;
        const int states = arena.states;
        auto peer = connectTo(arena.primary->listeningPort());
        QVERIFY(peer->waitForConnected(5000));
        QByteArray empties;
        for (int index = 0; index < 100'000; ++index)
            empties += header(0);
        peer->write(empties + framedHello("Empty Handed") + empties);
        QTRY_VERIFY(arena.primary->stations().contains("Empty Handed"));
        settle(1000);
        QCOMPARE(peer->state(), QAbstractSocket::ConnectedState);
        QCOMPARE(arena.primary->status().secondaries, 2);
        QVERIFY(arena.honestKeptUp(intervals, states, 1000));
    }

    void twoHundredConnectionsAtOnceAreServedAndLetGo()
    {
        Arena arena;
        QVERIFY(arena.open());
        const int intervals = arena.intervals;
        const int states = arena.states;
        std::vector<std::unique_ptr<QTcpSocket>> crowd;
        for (int index = 0; index < 200; ++index)
            crowd.push_back(connectTo(arena.primary->listeningPort()));
        QTRY_VERIFY_WITH_TIMEOUT(
            std::all_of(crowd.begin(), crowd.end(),
                [](const auto& peer) { return peer->state() == QAbstractSocket::ConnectedState; }),
            20000);
        QTRY_COMPARE_WITH_TIMEOUT(arena.attached(), 201, 20000);
        for (int index = 0; index < 200; ++index)
            crowd[std::size_t(index)]->write(framedHello(QString("Crowd %1").arg(index)));
        QTRY_COMPARE_WITH_TIMEOUT(arena.primary->status().secondaries, 201, 20000);
        QCOMPARE(arena.primary->stations().size(), 202);
        QCOMPARE(arena.primary->stations()[1], QString("Crowd 0"));
        QCOMPARE(arena.primary->stations()[2], QString("Crowd 1"));
        QCOMPARE(arena.primary->stations().last(), QString("Honest"));
        crowd.clear();
        QTRY_COMPARE_WITH_TIMEOUT(arena.primary->status().secondaries, 1, 20000);
        QTRY_COMPARE(arena.attached(), 1);
        const int intervalsAfter = arena.intervals;
        const int statesAfter = arena.states;
        settle(1000);
        QVERIFY(arena.honestKeptUp(intervalsAfter, statesAfter, 1000));
        QVERIFY(arena.intervals > intervals && arena.states > states);
        QCOMPARE(arena.overruns, 0);
    }
};

QTEST_GUILESS_MAIN(HostilePeersTest)
#include "HostilePeersTest.moc"
