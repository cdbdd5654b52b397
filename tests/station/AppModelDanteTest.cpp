// The station's Dante watch: started and stopped by its setting in a live station, the sample
// roster in a demo, nothing in an inert one.
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "FakeCaptureBackend.h"
#include "station/AppModel.h"

using namespace ostrel;

class AppModelDanteTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;

    std::unique_ptr<AppModel> make(AppModel::Mode mode)
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        store->setValue("qlabEnabled", false);
        return std::make_unique<AppModel>(mode, std::make_unique<AppSettings>(*store),
            std::make_unique<testsupport::FakeCaptureBackend>(), QLabClient::Timings {},
            folder.filePath("Sessions"));
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

private slots:
    void aLiveStationWatchesWhileTheSettingIsOnAndStopsWhenItGoesOff()
    {
        auto model = make(AppModel::Mode::live);
        QVERIFY(!model->dante().isRunning());
        model->start();
        QVERIFY(model->dante().isRunning());
        QVERIFY(model->showsDante());
        QSignalSpy shows(model.get(), &AppModel::showsDanteChanged);
        model->settings().dante().setMonitoringEnabled(false);
        settle();
        QVERIFY(!model->dante().isRunning());
        QVERIFY(!model->showsDante());
        QCOMPARE(shows.count(), 1);
        model->settings().dante().setMonitoringEnabled(true);
        settle();
        QVERIFY(model->dante().isRunning());
    }

    void aLiveStationWithTheSettingOffDoesNotWatch()
    {
        auto model = make(AppModel::Mode::live);
        model->settings().dante().setMonitoringEnabled(false);
        model->start();
        QVERIFY(!model->dante().isRunning());
    }

    void aDemoShowsTheSampleRosterWithStageBoxTwoOffline()
    {
        auto model = make(AppModel::Mode::demo);
        const Date before = std::chrono::system_clock::now();
        model->start();
        settle();
        QVERIFY(!model->dante().isRunning());
        const auto& devices = model->dante().devices();
        QCOMPARE(devices.size(), size_t(6));
        QCOMPARE(devices.front().name(), QString("Stage-Box-2"));
        QVERIFY(!devices.front().isOnline);
        QCOMPARE(model->dante().events().size(), size_t(1));
        QCOMPARE(model->dante().events().front().kind, DanteEvent::Kind::droppedOut);
        const double ago = secondsBetween(model->dante().events().front().date, before);
        QVERIFY(ago > 41.0 && ago < 43.0);
        const auto& roster = model->dante().roster().devices();
        QCOMPARE(roster.at("FOH-Desk").address, QString("192.168.1.20"));
        QCOMPARE(roster.at("Amp-Rack-R").address, QString("192.168.1.25"));
        QCOMPARE(roster.at("QLab-Mac").manufacturer, QString("Audinate"));
        QCOMPARE(roster.at("Amp-Rack-L").firmware, QString("4.2.1"));
    }

    void anInertStationNeitherWatchesNorShowsSamples()
    {
        auto model = make(AppModel::Mode::inert);
        model->start();
        settle();
        QVERIFY(!model->dante().isRunning());
        QVERIFY(model->dante().devices().empty());
    }
};

QTEST_GUILESS_MAIN(AppModelDanteTest)
#include "AppModelDanteTest.moc"
