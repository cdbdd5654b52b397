// Radio mics in the central model: the two switches reach the monitor, the receiver list is kept
// by a station and not by an inert one, and the demo shows its sample dropout.
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "FakeCaptureBackend.h"
#include "station/AppModel.h"

using namespace ostrel;
using ostrel::testsupport::FakeCaptureBackend;

class AppModelMicsTest : public QObject {
    Q_OBJECT

    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;

    std::unique_ptr<AppModel> make(AppModel::Mode mode, bool clear = true)
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        if (clear) {
            store->clear();
            // No QLab to look for in these tests.
            store->setValue("qlabEnabled", false);
        }
        return std::make_unique<AppModel>(
            mode, std::make_unique<AppSettings>(*store), std::make_unique<FakeCaptureBackend>());
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

private slots:
    void theSwitchesReachTheMonitorOnceATurnAfterStart()
    {
        auto model = make(AppModel::Mode::live);
        QVERIFY(!model->mics().isEnabled());
        model->start();
        QVERIFY(model->mics().isEnabled());
        QVERIFY(model->mics().warnsAboutLowBattery());
        const int applies = model->radioMics().applyCount();
        model->settings().mics().setLowBatteryWarnings(false);
        model->settings().mics().setMonitoringEnabled(false);
        QVERIFY(model->mics().isEnabled());
        settle();
        QCOMPARE(model->radioMics().applyCount(), applies + 1);
        QVERIFY(!model->mics().isEnabled());
        QVERIFY(!model->mics().warnsAboutLowBattery());
        QVERIFY(!model->showsMicAlerts());
    }

    void showsMicAlertsFollowsTheMonitoringSwitch()
    {
        auto model = make(AppModel::Mode::inert);
        QVERIFY(model->showsMicAlerts());
        QSignalSpy changed(model.get(), &AppModel::showsMicAlertsChanged);
        model->settings().mics().setMonitoringEnabled(false);
        QCOMPARE(changed.count(), 1);
        QVERIFY(!model->showsMicAlerts());
    }

    void aStationKeepsItsReceiversAcrossALaunch()
    {
        const MicReceiver receiver {QUuid::createUuid(), MicReceiverKind::g4, "10.0.0.9", "A"};
        {
            auto model = make(AppModel::Mode::live);
            model->settings().mics().setMonitoringEnabled(false);
            model->mics().addReceiver(receiver, std::nullopt);
            model->settings().store().flush();
        }
        auto relaunched = make(AppModel::Mode::live, false);
        QCOMPARE(relaunched->mics().receivers().size(), size_t(1));
        QCOMPARE(relaunched->mics().receivers().front(), receiver);
    }

    void anInertStationSavesNoReceivers()
    {
        auto model = make(AppModel::Mode::inert);
        model->mics().addReceiver(
            MicReceiver {QUuid::createUuid(), MicReceiverKind::g4, "10.0.0.9", ""}, std::nullopt);
        model->settings().store().flush();
        store->sync();
        QVERIFY(!store->contains("micReceivers"));
        model->start();
        QVERIFY(!model->mics().isEnabled());
    }

    void theDemoShowsOneSampleDropout()
    {
        auto model = make(AppModel::Mode::demo);
        model->start();
        QCOMPARE(model->mics().issues().size(), size_t(1));
        QCOMPARE(model->mics().issues().front().name, QString("SCROOGE"));
        QCOMPARE(model->mics().issues().front().key, QString("demo#3"));
        QCOMPARE(model->mics().issues().front().kind, MicIssueKind::dropout);
        QVERIFY(!model->mics().isEnabled());
    }
};

QTEST_GUILESS_MAIN(AppModelMicsTest)
#include "AppModelMicsTest.moc"
