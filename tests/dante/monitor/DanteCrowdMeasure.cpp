// 500 Dante devices announced at once: how long the station takes to list them all with their
// details, how much memory they cost, and how long the main thread was held up at most. These are
// reported, not judged; the test only requires every device to arrive.
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <algorithm>

#include "MdnsServices.h"
#include "dante/monitor/DanteMonitor.h"
#include "views/dante/DanteStatusModel.h"
#include "views/dante/DanteWidgetModel.h"

using namespace ostrel;

namespace {

constexpr int deviceCount = 500;

long residentKilobytes()
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').front().toLong();
    return -1;
}

int detailedDevices(const DanteMonitor& monitor)
{
    return static_cast<int>(std::count_if(monitor.devices().begin(), monitor.devices().end(),
        [](const DanteDevice& device) { return device.address && device.firmware; }));
}

} // namespace

class DanteCrowdMeasure : public QObject {
    Q_OBJECT

private slots:
    void fiveHundredDevicesAnnouncedAtOnceAreListedAndMeasured()
    {
        DanteMonitor monitor;
        // What the main screen would recompute at each change.
        DanteStatusModel status;
        status.setDante(&monitor);
        status.setShowsDante(true);
        status.setVisible(true);
        DanteWidgetModel widget;
        widget.setDante(&monitor);
        monitor.start();
        QTRY_VERIFY(monitor.isRunning() && !monitor.hasProblem());
        const long before = residentKilobytes();

        // The longest gap between ticks of a 5 ms timer: how long the main thread was busy.
        QElapsedTimer sinceTick;
        qint64 longestGap = 0;
        QTimer ticker;
        ticker.setInterval(5);
        connect(&ticker, &QTimer::timeout,
            [&] { longestGap = std::max(longestGap, sinceTick.restart()); });

        QProcess publisher;
        publisher.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QElapsedTimer clock;
        clock.start();
        publisher.start(QStringLiteral(OSTREL_PUBLISH_DEVICES),
            {QString::number(deviceCount), QStringLiteral("Crowd")});
        QVERIFY(publisher.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(publisher.canReadLine(), 30000);
        const qint64 committed = clock.elapsed();
        sinceTick.start();
        ticker.start();
        QTRY_VERIFY_WITH_TIMEOUT(!monitor.devices().empty(), 30000);
        const qint64 first = clock.elapsed();
        QTRY_COMPARE_WITH_TIMEOUT(detailedDevices(monitor), deviceCount, 60000);
        const qint64 all = clock.elapsed();
        ticker.stop();
        const long after = residentKilobytes();

        qInfo("%d devices: announced at %lld ms, first listed at %lld ms, all listed with "
              "details and addresses at %lld ms (%lld ms after the first)",
            deviceCount, static_cast<long long>(committed), static_cast<long long>(first),
            static_cast<long long>(all), static_cast<long long>(all - first));
        qInfo("Longest wait of the main thread meanwhile: %lld ms",
            static_cast<long long>(longestGap));
        qInfo("Resident memory: %ld kB before, %ld kB after (%+ld kB)", before, after,
            after - before);
        QCOMPARE(status.text(), QString("500 devices"));
        QCOMPARE(widget.moreText(), QString("492 more"));

        // All of them gone at once, as when a switch fails.
        longestGap = 0;
        sinceTick.start();
        ticker.start();
        clock.restart();
        publisher.terminate();
        publisher.waitForFinished(5000);
        QTRY_COMPARE_WITH_TIMEOUT(monitor.offlineDevices().size(), size_t(deviceCount), 60000);
        const qint64 gone = clock.elapsed();
        ticker.stop();
        qInfo("All %d withdrawn: offline after %lld ms; longest wait of the main thread %lld ms",
            deviceCount, static_cast<long long>(gone), static_cast<long long>(longestGap));
        QCOMPARE(status.text(), QString("500 Dante devices offline"));
        QCOMPARE(monitor.events().size(), size_t(200));
    }
};

QTEST_MAIN(DanteCrowdMeasure)
#include "DanteCrowdMeasure.moc"
