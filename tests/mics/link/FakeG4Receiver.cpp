// A stand-in ew G4 receiver on loopback for the link's tests: answers "Name", honours "Push" and
// plays one scenario of pushed status datagrams to whoever subscribed.
//
//   fake-g4-receiver [--port N] [--name NAME] [--cycle MS] [--flood PER_SECOND --seconds S]
//                    --scenario signal|signal-then-mute|low-battery|flicker|silence|garbage|flood
//
// Prints "port N" once listening, and "muted <ms since epoch>" when the mute begins.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QNetworkDatagram>
#include <QTimer>
#include <QUdpSocket>
#include <algorithm>
#include <cstdio>

namespace {

const QByteArray signalStatus = "RF 35 0 1\rAF -20 -10\rBat 4\rMsg OK\r";
const QByteArray mutedStatus = "RF 0 0 0\rAF -90 -90\rBat 4\rMsg RF_Mute\r";
const QByteArray lowBatteryStatus = "RF 30 0 1\rBat 1\rMsg Low_Battery\r";

void say(const QByteArray& line)
{
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser options;
    options.addOptions({{"port", "UDP port on 127.0.0.1, 0 for any", "port", "0"},
        {"name", "the receiver's name", "name", "Rack G4"},
        {"cycle", "push cycle in ms; 0 takes the subscriber's", "ms", "0"},
        {"scenario", "what to play", "scenario", "signal"},
        {"flood", "datagrams per second in the flood scenario", "count", "10000"},
        {"seconds", "length of the flood", "seconds", "10"}});
    options.process(app);
    const QString scenario = options.value("scenario");
    const QByteArray name = options.value("name").toUtf8();

    QUdpSocket socket;
    if (!socket.bind(QHostAddress::LocalHost, quint16(options.value("port").toUInt()))) {
        say("can't bind: " + socket.errorString().toUtf8());
        return 1;
    }
    say("port " + QByteArray::number(socket.localPort()));

    QHostAddress subscriber;
    quint16 subscriberPort = 0;
    int pushes = 0;
    QTimer pushTimer;
    QTimer floodTimer;
    qint64 flooded = 0;
    const qint64 floodTotal
        = options.value("flood").toLongLong() * options.value("seconds").toLongLong();

    const auto send = [&](const QByteArray& datagram) {
        if (subscriberPort != 0) socket.writeDatagram(datagram, subscriber, subscriberPort);
    };
    QObject::connect(&pushTimer, &QTimer::timeout, [&] {
        ++pushes;
        if (scenario == "signal") {
            send(signalStatus);
        } else if (scenario == "signal-then-mute") {
            if (pushes == 5)
                say("muted " + QByteArray::number(QDateTime::currentMSecsSinceEpoch()));
            send(pushes < 5 ? signalStatus : mutedStatus);
        } else if (scenario == "low-battery") {
            send(pushes < 3 ? signalStatus : lowBatteryStatus);
        } else if (scenario == "flicker") {
            // Signal, a short dropout, signal once more, then nothing at all.
            if (pushes < 7) send(pushes == 4 || pushes == 5 ? mutedStatus : signalStatus);
            if (pushes == 7) say("silent");
        } else if (scenario == "silence") {
            if (pushes < 4) send(signalStatus);
            if (pushes == 4) say("silent");
        } else if (scenario == "garbage") {
            const QByteArray garbage[] = {"Hello there\r", QByteArray("\xff\xfe\x00RF 3 0 1\r", 11),
                "\r\n\r\n", "rf 35 0 1\rmsg OK\r", QByteArray(1400, 'x')};
            send(garbage[pushes % 5]);
        }
    });
    // The flood comes in bursts every millisecond, as fast as a broken receiver might send.
    floodTimer.setTimerType(Qt::PreciseTimer);
    QElapsedTimer floodClock;
    QObject::connect(&floodTimer, &QTimer::timeout, [&] {
        // Catches up with the wall clock, so a late timer does not slow the flood down.
        const qint64 due = std::min(
            floodTotal, floodClock.elapsed() * options.value("flood").toLongLong() / 1000);
        for (; flooded < due; ++flooded)
            send(signalStatus);
        if (flooded >= floodTotal) {
            floodTimer.stop();
            say("flooded " + QByteArray::number(flooded));
        }
    });

    QObject::connect(&socket, &QUdpSocket::readyRead, [&] {
        while (socket.hasPendingDatagrams()) {
            const QNetworkDatagram datagram = socket.receiveDatagram();
            const QByteArray text = datagram.data();
            say("got " + text.trimmed());
            if (text.startsWith("Name")) {
                subscriber = datagram.senderAddress();
                subscriberPort = quint16(datagram.senderPort());
                if (scenario != "garbage" && !(scenario == "silence" && pushes >= 4)
                    && !(scenario == "flicker" && pushes >= 7))
                    send("Name " + name + "\r");
            } else if (text.startsWith("Push ")) {
                const QList<QByteArray> fields = text.trimmed().split(' ');
                subscriber = datagram.senderAddress();
                subscriberPort = quint16(datagram.senderPort());
                const int asked = fields.value(2).toInt();
                if (asked == 0) {
                    pushTimer.stop();
                    continue;
                }
                if (scenario == "flood") {
                    if (!floodTimer.isActive() && flooded == 0) {
                        floodClock.start();
                        floodTimer.start(1);
                    }
                    continue;
                }
                const int cycle = options.value("cycle").toInt();
                if (!pushTimer.isActive()) pushTimer.start(cycle > 0 ? cycle : asked);
            }
        }
    });
    return app.exec();
}
