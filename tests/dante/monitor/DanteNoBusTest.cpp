// A station started where no system bus is reachable yet: it says in plain words why no Dante
// device can be seen, measures on, and picks the devices up once a bus and daemon appear.
#include <QProcessEnvironment>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "FakeCaptureBackend.h"
#include "MdnsServices.h"
#include "measurement/SPLMath.h"
#include "station/AppModel.h"
#include "views/dante/DanteStatusModel.h"

using namespace ostrel;
using testsupport::FakeDevice;

namespace {

const QString lateFolder = QStringLiteral(OSTREL_MDNS_DIR "/late");

const DanteDevice* find(const DanteMonitor& monitor, const QString& name)
{
    const auto found = monitor.roster().devices().find(name);
    return found == monitor.roster().devices().end() ? nullptr : &found->second;
}

} // namespace

class DanteNoBusTest : public QObject {
    Q_OBJECT

private slots:
    void withoutASystemBusTheStatusSaysSoAndTheStationWorksOn()
    {
        QTemporaryDir folder;
        QSettings file(folder.filePath("settings.ini"), QSettings::IniFormat);
        file.setValue("qlabEnabled", false);
        AppModel model(AppModel::Mode::live, std::make_unique<AppSettings>(file),
            std::make_unique<testsupport::FakeCaptureBackend>(), QLabClient::Timings {},
            folder.filePath("Sessions"));
        DanteStatusModel status;
        status.setDante(&model.dante());
        status.setShowsDante(model.showsDante());
        model.start();
        QVERIFY(model.dante().isRunning());
        QTRY_COMPARE(model.dante().problem(),
            QString("Dante devices can't be found: the Avahi daemon isn't running."));
        QVERIFY(status.shows());
        QCOMPARE(status.text(), model.dante().problem());
        // The rest of the station goes on: readings reach the meter.
        MeasurementInterval interval;
        interval.sampleCount = 4800;
        interval.level = 72.0;
        interval.energy = SPLMath::power(72.0) * 4800.0;
        interval.peakPower = SPLMath::power(75.0);
        interval.maxLevel = 72.0;
        model.ingest(interval, std::chrono::system_clock::now());
        QCOMPARE(model.meter().statistics().sampleCount, 4800);
        QCOMPARE(model.meter().level(), std::optional<double>(72.0));
        // Turning the watch off ends the complaint.
        model.settings().dante().setMonitoringEnabled(false);
        QTRY_VERIFY(!model.dante().isRunning());
        QVERIFY(!model.dante().hasProblem());
    }

    void theMonitorPicksUpDevicesWhenABusAndDaemonStartLate()
    {
        DanteMonitor monitor(
            DanteMonitor::Timings {std::chrono::milliseconds(5000), std::chrono::milliseconds(200)},
            {});
        monitor.start();
        QTRY_VERIFY(monitor.hasProblem());
        // One avahi-daemon at a time: the fixture's makes way for one on the late bus.
        QVERIFY(testsupport::mdnsScript("stop-daemon"));
        QVERIFY(testsupport::mdnsScript("start", lateFolder));
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS",
            QStringLiteral("unix:path=") + lateFolder + QStringLiteral("/system_bus_socket"));
        bool pickedUp = false;
        {
            FakeDevice device("Late-Bus-Box", {"model=DX168"}, {}, environment);
            if (device.waitUntilEstablished())
                pickedUp = QTest::qWaitFor(
                    [&] {
                        const DanteDevice* found = find(monitor, "Late-Bus-Box");
                        return found && found->model == QString("DX168");
                    },
                    15000);
        }
        const bool problemCleared = !monitor.hasProblem();
        monitor.stop();
        QVERIFY(testsupport::mdnsScript("stop", lateFolder));
        QVERIFY(testsupport::mdnsScript("start-daemon"));
        QVERIFY(pickedUp);
        QVERIFY(problemCleared);
    }
};

QTEST_MAIN(DanteNoBusTest)
#include "DanteNoBusTest.moc"
