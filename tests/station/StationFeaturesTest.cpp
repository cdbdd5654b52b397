// Each feature class of the station on its own, over its own settings group: no AppModel.
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <chrono>
#include <cmath>

#include "FakeCaptureBackend.h"
#include "measurement/InputSettings.h"
#include "measurement/MeasurementSettings.h"
#include "qlab/QLabSettings.h"
#include "recording/DiskSessionFiles.h"
#include "sessions/SessionSettings.h"
#include "station/CalibrationRun.h"
#include "station/LiveInput.h"
#include "station/QLabLink.h"
#include "station/ShowSessions.h"
#include "support/SteadyInterval.h"

using namespace ostrel;
using ostrel::testsupport::FakeCaptureBackend;

class StationFeaturesTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> settings;
    std::unique_ptr<SettingsStore> store;
    Date now = Date {} + std::chrono::hours(24 * 365 * 56);

    SettingsStore& freshStore()
    {
        store.reset();
        settings
            = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        settings->clear();
        store = std::make_unique<SettingsStore>(*settings);
        return *store;
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

private slots:
    void liveInputSelectsOnceForADeviceAndChannelChangedInOneTurn()
    {
        InputSettings input(freshStore());
        auto fake = std::make_unique<FakeCaptureBackend>();
        fake->devices = {testsupport::device("mic", "Measurement Mic", 2),
            testsupport::device("usb", "USB Interface", 4)};
        FakeCaptureBackend* backend = fake.get();
        LiveInput live(std::move(fake), input, [this] { return now; });
        QSignalSpy changed(&live, &LiveInput::inputChanged);

        live.start();
        QCOMPARE(backend->starts, 1);
        input.setDeviceUID("usb");
        input.setChannel(3);
        QCOMPARE(live.applyCount(), 0);
        settle();
        QCOMPARE(live.applyCount(), 1);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(live.audio().activeDevice()->uid, QString("usb"));
        QCOMPARE(live.audio().measuredChannel(), 3);
    }

    void liveInputFollowsNoSettingsBeforeItStarts()
    {
        InputSettings input(freshStore());
        LiveInput live(std::make_unique<FakeCaptureBackend>(), input, [this] { return now; });
        input.setChannel(1);
        settle();
        QCOMPARE(live.applyCount(), 0);
    }

    void liveInputHandsOnEachIntervalWithItsClocksDate()
    {
        InputSettings input(freshStore());
        LiveInput live(std::make_unique<FakeCaptureBackend>(), input, [this] { return now; });
        std::vector<Date> dates;
        live.onInterval = [&](const MeasurementInterval&, Date at) { dates.push_back(at); };
        live.audio().onInterval(testsupport::steadyInterval(70.0));
        QCOMPARE(dates.size(), size_t(1));
        QVERIFY(dates.front() == now);
    }

    void qlabLinkTrimsSpacesAndTabsButNotLineEnds()
    {
        QCOMPARE(QLabLink::trimmedHost(" \t10.0.0.5 \t"), QString("10.0.0.5"));
        QCOMPARE(QLabLink::trimmedHost("10.0.0.5\n"), QString("10.0.0.5\n"));
        QCOMPARE(QLabLink::trimmedHost("   "), QString());
    }

    void qlabLinkClampsThePortToATcpPort()
    {
        QCOMPARE(QLabLink::clampedPort(-1), quint16(0));
        QCOMPARE(QLabLink::clampedPort(53000), quint16(53000));
        QCOMPARE(QLabLink::clampedPort(70000), quint16(65535));
    }

    void qlabLinkAppliesItsGroupOncePerTurnAndTurnsTheClientOff()
    {
        QLabSettings qlab(freshStore());
        QLabLink link(qlab, {}, [this] { return now; });
        link.start();
        QCOMPARE(link.applyCount(), 1);
        qlab.setHost("10.0.0.9");
        qlab.setPort(53001);
        qlab.setEnabled(false);
        settle();
        QCOMPARE(link.applyCount(), 2);
        QCOMPARE(link.client().state(), QLabClientState::off);
        QCOMPARE(link.client().host(), QString("10.0.0.9"));
        QCOMPARE(link.client().port(), quint16(53001));
    }

    void qlabLinkGivesTheClientAClampedPortAndLocalhostForABlankHost()
    {
        QLabSettings qlab(freshStore());
        QLabLink link(qlab, {}, [this] { return now; });
        qlab.setPort(70000);
        qlab.setHost("  ");
        link.start();
        QCOMPARE(link.client().port(), quint16(65535));
        QCOMPARE(link.client().host(), QString("localhost"));
        qlab.setPort(-1);
        settle();
        QCOMPARE(link.client().port(), quint16(0));
    }

    void showSessionsFollowTheMeterSettingTheCorrectionAndTheLevelHistorySwitch()
    {
        SettingsStore& settingsStore = freshStore();
        SessionSettings sessionSettings(settingsStore);
        MeasurementSettings measurement(settingsStore);
        ShowSessions shows(sessionSettings, measurement, std::make_shared<MeasurementPipeline>(),
            std::make_shared<DiskSessionFiles>(), folder.filePath("Sessions"));
        shows.setKeepsFiles(false);
        shows.start();
        QCOMPARE(shows.store().meterSetting(), QString("A / Fast"));
        QVERIFY(shows.store().recordsLevelHistory());

        measurement.setWeighting(FrequencyWeighting::c);
        measurement.setMicrophoneCorrection(
            MicrophoneCorrection("ECM8000.txt", {{20, 1}, {20000, -1}}, 0.0));
        sessionSettings.setRecordsLevelHistory(false);
        settle();
        QCOMPARE(shows.store().meterSetting(), QString("C / Fast"));
        QCOMPARE(shows.store().microphoneCorrectionName(), std::optional<QString>("ECM8000.txt"));
        QVERIFY(!shows.store().recordsLevelHistory());
    }

    void aCalibrationRunGivesItsResultAgainstTheReferenceLevelOfTheMoment()
    {
        MeasurementSettings measurement(freshStore());
        CalibrationRun run(measurement);
        run.setTick(5);
        std::optional<std::optional<CalibrationResult>> outcome;
        std::vector<double> progress;
        run.measure(
            0.05, [&](double fraction) { progress.push_back(fraction); },
            [&](std::optional<CalibrationResult> result) { outcome = result; });
        QVERIFY(run.isMeasuring());
        for (int i = 0; i < 30; ++i)
            run.add(testsupport::steadyInterval(74.0)); // -20 dBFS raw
        measurement.setCalibratorReferenceLevel(114.0);
        QTRY_VERIFY(outcome.has_value());
        QVERIFY(!run.isMeasuring());
        QVERIFY(!progress.empty());
        QCOMPARE(progress.back(), 1.0);
        QVERIFY(outcome->has_value());
        QCOMPARE((*outcome)->kind, CalibrationResult::Kind::success);
        // Judged against the reference level set while it ran, not the one at its start.
        QCOMPARE((*outcome)->offset, 114.0 - (*outcome)->measuredDBFS);
        QVERIFY(std::abs((*outcome)->measuredDBFS + 20.0) < 0.01);
    }

    void aCancelledCalibrationRunStillGivesWhatItHas()
    {
        MeasurementSettings measurement(freshStore());
        CalibrationRun run(measurement);
        bool completed = false;
        run.measure(60.0, nullptr, [&](std::optional<CalibrationResult>) { completed = true; });
        run.cancel();
        QVERIFY(completed);
        QVERIFY(!run.isMeasuring());
        run.add(testsupport::steadyInterval(80.0)); // nothing to add to any more
    }
};

QTEST_GUILESS_MAIN(StationFeaturesTest)
#include "StationFeaturesTest.moc"
