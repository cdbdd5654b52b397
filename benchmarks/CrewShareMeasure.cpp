// A primary sharing ten intervals and two states a second with ten secondaries on loopback:
// the primary's CPU above its idle self and inside `share`, the bytes each secondary receives
// a second, and the delay from `share` to a decoded interval (median, 99th percentile). The
// primary runs in a process of its own, so that its CPU is its alone; the secondaries are plain
// sockets here, reading and decoding every frame as a station does.
//
//   crew_share_measure [seconds, default 20]
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTcpSocket>
#include <QTimer>

#include "crew/CrewLink.h"
#include "network/CrewFrameReader.h"
#include "network/CrewFraming.h"

using namespace ostrel;

namespace {

constexpr int secondaryCount = 10;

double processCpuSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double threadCpuSeconds()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double wallSeconds()
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// An interval as the pipeline makes it, spectrum included; its energy carries the sending time.
MeasurementInterval stampedInterval()
{
    MeasurementInterval interval;
    interval.sampleCount = 4800;
    interval.energy = wallSeconds();
    interval.level = 82.0;
    interval.maxLevel = 84.0;
    Spectrum& spectrum = interval.spectrum.emplace();
    spectrum.bandLevels.fill(60.0);
    spectrum.fineBandLevels.fill(55.0);
    spectrum.dominantFrequency = 250.0;
    return interval;
}

// What a primary in a show shares twice a second: cues, devices, an event log and mic issues.
MirrorState showState()
{
    MirrorState state;
    state.station = "FOH";
    state.meterSetting = "A-weighted, Fast, calibrated";
    state.isCalibrated = true;
    state.statistics.sampleCount = 48000 * 3600;
    state.statistics.energy = 1e12;
    state.statistics.duration = 3600.0;
    state.statistics.maxLevel = 101.2;
    state.qlabState = QLabClientState::connected;
    state.workspace = "Macbeth";
    for (int index = 0; index < 3; ++index) {
        QLabCue cue;
        cue.id = QString("CUE-%1").arg(index);
        cue.number = QString::number(10 + index);
        cue.name = QString("Storm layer %1").arg(index);
        cue.type = "Audio";
        cue.actionElapsed = 12.5;
        cue.duration = 90.0;
        cue.sampledAt = std::chrono::system_clock::now();
        cue.startedAt = std::chrono::system_clock::now();
        state.cues.push_back(cue);
    }
    state.showsDante = true;
    for (int index = 0; index < 12; ++index) {
        DanteDevice device;
        device.id = QString("Stage-Box-%1").arg(index);
        device.model = "DX168";
        device.manufacturer = "Allen & Heath";
        device.address = QString("10.0.0.%1").arg(index + 10);
        state.danteDevices.push_back(device);
    }
    for (int index = 0; index < 20; ++index)
        state.danteEvents.push_back(DanteEvent {QUuid::createUuid(), "Stage-Box-3",
            DanteEvent::Kind::droppedOut, std::chrono::system_clock::now()});
    state.showsMics = true;
    state.micIssues.push_back(MicIssue {
        "rx1|2", "Lead Vocal", MicIssueKind::lowBattery, std::chrono::system_clock::now()});
    for (int index = 0; index < 24; ++index)
        state.micNames.append(QString("Mic %1").arg(index + 1));
    return state;
}

// The primary's process: idle first (sharing with nobody attached), then with the secondaries.
int runPrimary(double seconds)
{
    CrewLink link;
    link.configure(CrewRole::primary, "FOH", "");
    std::printf("port %u\n", link.listeningPort());
    std::fflush(stdout);
    const MirrorState state = showState();
    double insideShare = 0.0;
    int ticks = 0;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(100);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const double start = threadCpuSeconds();
        link.share(stampedInterval());
        if (++ticks % 5 == 0) link.share(state);
        insideShare += threadCpuSeconds() - start;
    });
    timer.start();

    auto measure = [&](double duration) {
        const double cpuStart = processCpuSeconds();
        const double shareStart = insideShare;
        QElapsedTimer elapsed;
        elapsed.start();
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(duration * 1000), &loop, &QEventLoop::quit);
        loop.exec();
        const double wall = static_cast<double>(elapsed.elapsed()) / 1000.0;
        return std::pair {
            (processCpuSeconds() - cpuStart) / wall, (insideShare - shareStart) / wall};
    };
    const auto idle = measure(seconds / 2);
    std::printf("idle\n");
    std::fflush(stdout);
    QEventLoop attaching;
    QObject::connect(&link, &CrewLink::statusChanged, &attaching, [&] {
        if (link.status().secondaries >= secondaryCount) attaching.quit();
    });
    attaching.exec();
    measure(2.0);
    std::printf("measuring\n");
    std::fflush(stdout);
    const auto sharing = measure(seconds);
    std::printf("cpu idle %.3f%% sharing %.3f%% above-idle %.3f%% inside-share %.3f%%\n",
        idle.first * 100, sharing.first * 100, (sharing.first - idle.first) * 100,
        sharing.second * 100);
    std::fflush(stdout);
    return 0;
}

struct Secondary {
    std::unique_ptr<QTcpSocket> socket = std::make_unique<QTcpSocket>();
    CrewFrameReader reader;
    qint64 bytes = 0;
};

double percentile(std::vector<double> values, double fraction)
{
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    const auto index = static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1));
    return values[index];
}

int runSecondaries(double seconds)
{
    QProcess primary;
    primary.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    primary.start(QCoreApplication::applicationFilePath(),
        {QStringLiteral("--primary"), QString::number(seconds)});
    auto readLine = [&] {
        while (!primary.canReadLine())
            if (!primary.waitForReadyRead(60000)) return QByteArray();
        return primary.readLine().trimmed();
    };
    const QByteArray portLine = readLine();
    if (!portLine.startsWith("port ")) return 1;
    const auto port = static_cast<quint16>(portLine.mid(5).toUInt());
    if (readLine() != "idle") return 1;

    std::vector<Secondary> secondaries(secondaryCount);
    bool measuring = false;
    std::vector<double> delays;
    for (int index = 0; index < secondaryCount; ++index) {
        Secondary& secondary = secondaries[std::size_t(index)];
        QTcpSocket* socket = secondary.socket.get();
        QObject::connect(socket, &QTcpSocket::readyRead, [&, socket, index] {
            Secondary& self = secondaries[std::size_t(index)];
            while (socket->bytesAvailable() > 0) {
                const qint64 size
                    = std::min<qint64>(self.reader.wanted(), socket->bytesAvailable());
                const QByteArray bytes = socket->read(size);
                if (measuring) self.bytes += bytes.size();
                if (self.reader.append(bytes) != CrewFrameReader::Outcome::bodyComplete) continue;
                const auto decoded = CrewFraming::decode(self.reader.takeBody());
                const auto* message = std::get_if<CrewMessage>(&decoded);
                const auto* interval
                    = message ? std::get_if<CrewMessages::Interval>(message) : nullptr;
                if (!interval) continue;
                const auto value = CrewFraming::decodeInterval(interval->frame);
                if (value && measuring) delays.push_back(wallSeconds() - value->energy);
            }
        });
        socket->connectToHost(QHostAddress::LocalHost, port);
        if (!socket->waitForConnected(5000)) return 1;
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        socket->write(*CrewFraming::frame(
            CrewMessages::Hello {QString("Secondary %1").arg(index), CrewRole::secondary}));
    }
    // The primary says when its measured span begins, and prints its figures when it ends.
    QElapsedTimer elapsed;
    QByteArray result;
    QObject::connect(&primary, &QProcess::readyRead, [&] {
        while (primary.canReadLine()) {
            const QByteArray line = primary.readLine().trimmed();
            if (line == "measuring") {
                measuring = true;
                elapsed.start();
            } else if (line.startsWith("cpu")) {
                result = line;
                measuring = false;
            }
        }
    });
    QEventLoop running;
    QObject::connect(&primary, &QProcess::finished, &running, &QEventLoop::quit);
    running.exec();
    const double wall = static_cast<double>(elapsed.elapsed()) / 1000.0;
    primary.waitForFinished(5000);

    qint64 totalBytes = 0;
    for (const Secondary& secondary : secondaries)
        totalBytes += secondary.bytes;
    std::printf("Crew share, %d secondaries on loopback, %.0f s measured\n", secondaryCount, wall);
    std::printf("primary %s\n", result.constData());
    std::printf("bytes per second per secondary: %.0f\n",
        static_cast<double>(totalBytes) / secondaryCount / wall);
    std::printf("share to decoded interval: %zu samples, median %.3f ms, 99th percentile %.3f ms, "
                "max %.3f ms\n",
        delays.size(), percentile(delays, 0.5) * 1000, percentile(delays, 0.99) * 1000,
        percentile(delays, 1.0) * 1000);
    return result.isEmpty() ? 1 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.value(0) == QStringLiteral("--primary"))
        return runPrimary(arguments.value(1).toDouble());
    const double seconds = arguments.isEmpty() ? 20.0 : arguments.value(0).toDouble();
    return runSecondaries(seconds > 0 ? seconds : 20.0);
}
