// The central model: modes, start-up, settings groups applied once per turn, calibration.
#include <algorithm>

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "FakeCaptureBackend.h"
#include "measurement/SPLMath.h"
#include "station/AppModel.h"
#include "support/SteadyInterval.h"

using namespace ostrel;
using ostrel::testsupport::FakeCaptureBackend;

class AppModelTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    FakeCaptureBackend* backend = nullptr;

    std::unique_ptr<AppModel> make(AppModel::Mode mode)
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        auto fake = std::make_unique<FakeCaptureBackend>();
        fake->devices = {testsupport::device("mic", "Measurement Mic", 2)};
        backend = fake.get();
        return std::make_unique<AppModel>(
            mode, std::make_unique<AppSettings>(*store), std::move(fake));
    }

    static MeasurementInterval interval(double level) { return testsupport::steadyInterval(level); }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

private slots:
    void theTestHostKeyWinsOverTheDemoArgument()
    {
        QProcessEnvironment environment;
        environment.insert("XCTestConfigurationFilePath", "/tmp/x");
        QCOMPARE(
            AppModel::currentMode({"ostrel-live", "-demo"}, environment), AppModel::Mode::inert);
        QCOMPARE(AppModel::currentMode({"ostrel-live", "-demo"}, QProcessEnvironment()),
            AppModel::Mode::demo);
        QCOMPARE(
            AppModel::currentMode({"ostrel-live"}, QProcessEnvironment()), AppModel::Mode::live);
    }

    void anArgumentThatOnlyContainsTheDemoFlagIsNotDemo()
    {
        const QProcessEnvironment none;
        QCOMPARE(AppModel::currentMode({"ostrel-live", "--demo"}, none), AppModel::Mode::live);
        QCOMPARE(AppModel::currentMode({"ostrel-live", "-demo-mode"}, none), AppModel::Mode::live);
        QCOMPARE(AppModel::currentMode({"ostrel-live", "x-demo"}, none), AppModel::Mode::live);
    }

    void liveModeStartsByItselfOnceAndTwoStartsSetUpOnce()
    {
        auto model = make(AppModel::Mode::live);
        QVERIFY(!model->hasStarted());
        QTRY_VERIFY(model->hasStarted());
        model->start();
        model->start();
        QCOMPARE(backend->starts, 1);
        QCOMPARE(model->measurementApplyCount(), 1);
        QCOMPARE(model->audio().status(), AudioInput::Status::running);
    }

    void onlyALiveStationOfABuildWithAFeedHasAnUpdater()
    {
        for (const auto mode : {AppModel::Mode::demo, AppModel::Mode::inert}) {
            auto model = make(mode);
            model->settings().updates().setChecksAutomatically(true);
            QVERIFY(!model->updater().isAvailable());
            QVERIFY(!model->updater().canCheckForUpdates());
            QVERIFY(!model->updater().checksAutomatically());
        }
        // A build left at the placeholder feed has none even when live.
        auto live = make(AppModel::Mode::live);
        QCOMPARE(live->updater().isAvailable(), AppUpdater::feedIsConfigured());
    }

    void inertModeRequestsNoAudioAndDoesNotStartByItself()
    {
        auto model = make(AppModel::Mode::inert);
        settle();
        QVERIFY(!model->hasStarted());
        model->start();
        QVERIFY(model->hasStarted());
        QCOMPARE(backend->starts, 0);
        QCOMPARE(model->audio().status(), AudioInput::Status::stopped);
    }

    void anInertStationStillHandsItsMeasurementSettingsToThePipeline()
    {
        auto model = make(AppModel::Mode::inert);
        model->settings().measurement().setWeighting(FrequencyWeighting::c);
        model->settings().measurement().setCalibrationOffset(97.0);
        model->start();
        const auto processor = model->audio().pipeline()->snapshot().processor;
        QCOMPARE(processor.weighting(), FrequencyWeighting::c);
        QCOMPARE(processor.calibrationOffset(), 97.0);
    }

    void responseAndOffsetChangesKeepStatisticsAndAWeightingChangeResetsThem()
    {
        auto model = make(AppModel::Mode::inert);
        model->start();
        model->ingest(interval(90.0), std::chrono::system_clock::now());
        QVERIFY(!model->meter().statistics().isEmpty());

        model->settings().measurement().setResponse(TimeWeighting::slow);
        settle();
        QVERIFY(!model->meter().statistics().isEmpty());
        model->settings().measurement().setCalibrationOffset(101.0);
        settle();
        QVERIFY(!model->meter().statistics().isEmpty());
        QCOMPARE(model->audio().pipeline()->snapshot().processor.calibrationOffset(), 101.0);
        QCOMPARE(model->audio().pipeline()->snapshot().processor.response(), TimeWeighting::slow);

        model->settings().measurement().setWeighting(FrequencyWeighting::c);
        settle();
        QVERIFY(model->meter().statistics().isEmpty());
        QCOMPARE(
            model->audio().pipeline()->snapshot().processor.weighting(), FrequencyWeighting::c);
    }

    void removingTheMicrophoneCorrectionResetsStatistics()
    {
        auto model = make(AppModel::Mode::inert);
        model->settings().measurement().setMicrophoneCorrection(
            MicrophoneCorrection("mic", {{20, 0}, {1000, 0}, {20000, 0}}));
        model->start();
        model->ingest(interval(90.0), std::chrono::system_clock::now());
        model->settings().measurement().setMicrophoneCorrection(std::nullopt);
        settle();
        QVERIFY(model->meter().statistics().isEmpty());
        QVERIFY(!model->audio().pipeline()->snapshot().processor.hasCorrectionFilter());
    }

    void severalAssignmentsInOneTurnApplyOnce()
    {
        auto model = make(AppModel::Mode::live);
        QTRY_VERIFY(model->hasStarted());
        const int applies = model->measurementApplyCount();
        model->settings().measurement().setWeighting(FrequencyWeighting::z);
        model->settings().measurement().setResponse(TimeWeighting::slow);
        model->settings().measurement().setCalibrationOffset(99.0);
        settle();
        QCOMPARE(model->measurementApplyCount(), applies + 1);
    }

    void changingDeviceAndChannelInOneTurnGivesOneSelectAndOneReset()
    {
        auto model = make(AppModel::Mode::live);
        QTRY_VERIFY(model->hasStarted());
        model->ingest(interval(90.0), std::chrono::system_clock::now());
        const int starts = backend->starts;
        backend->devices.push_back(testsupport::device("usb", "USB Interface", 4));
        model->settings().input().setDeviceUID("usb");
        model->settings().input().setChannel(2);
        settle();
        QCOMPARE(model->input().applyCount(), 1);
        QCOMPARE(backend->starts, starts + 1);
        QCOMPARE(model->audio().measuredChannel(), 2);
        QVERIFY(!model->meter().level().has_value());
    }

    // A clock that moves by a tenth of a second at every reading, as the real tick does.
    static CalibrationRun::Clock steppingClock(std::vector<double> steps = {})
    {
        auto reads = std::make_shared<int>(0);
        return [reads, steps = std::move(steps)] {
            const int read = (*reads)++;
            double extra = 0.0;
            for (int i = 0; i < read && i < static_cast<int>(steps.size()); ++i)
                extra += steps[static_cast<std::size_t>(i)];
            return read * 0.1 + extra;
        };
    }

    void calibrationReportsProgressEveryTenthOfASecondEndingAtExactlyOne()
    {
        auto model = make(AppModel::Mode::inert);
        model->calibration().setTick(1);
        model->calibration().setClock(steppingClock());
        model->start();
        std::vector<double> fractions;
        std::optional<std::optional<CalibrationResult>> outcome;
        model->measureCalibration(
            5.0, [&](double fraction) { fractions.push_back(fraction); },
            [&](std::optional<CalibrationResult> result) { outcome = result; });
        QVERIFY(model->calibration().isMeasuring());
        for (int i = 0; i < 20; ++i) {
            auto tone = interval(80.0);
            model->ingest(tone, std::chrono::system_clock::now());
        }
        QTRY_VERIFY(outcome.has_value());
        QCOMPARE(fractions.size(), std::size_t {50});
        QCOMPARE(fractions.front(), 0.02);
        QCOMPARE(fractions.back(), 1.0);
        QVERIFY(std::all_of(fractions.begin(), fractions.end() - 1,
            [](double fraction) { return fraction < 1.0; }));
        QVERIFY(std::is_sorted(fractions.begin(), fractions.end()));
        QVERIFY(outcome->has_value());
        QCOMPARE((*outcome)->kind, CalibrationResult::Kind::success);
        QVERIFY(std::fabs((*outcome)->offset - (94.0 + 20.0)) < 1e-9);
        QVERIFY(!model->calibration().isMeasuring());
    }

    void aLateTickIsNotMadeUpAndTheMeasurementStillEndsOnTime()
    {
        auto model = make(AppModel::Mode::inert);
        model->calibration().setTick(1);
        // The fourth reading comes a whole second late.
        model->calibration().setClock(steppingClock({0.0, 0.0, 0.0, 1.0}));
        model->start();
        std::vector<double> fractions;
        bool finished = false;
        model->measureCalibration(
            5.0, [&](double fraction) { fractions.push_back(fraction); },
            [&](std::optional<CalibrationResult>) { finished = true; });
        QTRY_VERIFY(finished);
        QCOMPARE(fractions.size(), std::size_t {40});
        QCOMPARE(fractions[3], 0.28);
        QCOMPARE(fractions.back(), 1.0);
    }

    void aCancelledCalibrationGivesWhatTheCollectorHas()
    {
        auto model = make(AppModel::Mode::inert);
        model->start();
        std::optional<std::optional<CalibrationResult>> outcome;
        model->measureCalibration(
            5.0, nullptr, [&](std::optional<CalibrationResult> result) { outcome = result; });
        model->calibration().cancel();
        QVERIFY(outcome.has_value());
        QCOMPARE((*outcome)->kind, CalibrationResult::Kind::noSignal);
    }

    void applyingACalibrationMakesTheStationCalibratedAndResetsStatistics()
    {
        auto model = make(AppModel::Mode::inert);
        model->start();
        model->ingest(interval(90.0), std::chrono::system_clock::now());
        QVERIFY(!model->settings().measurement().isCalibrated());
        model->applyCalibration(114.0);
        QVERIFY(model->settings().measurement().isCalibrated());
        QCOMPARE(model->settings().measurement().calibrationOffset(), 114.0);
        QVERIFY(model->meter().statistics().isEmpty());
        settle();
        QCOMPARE(model->audio().pipeline()->snapshot().processor.calibrationOffset(), 114.0);
    }

    void calibratingSuspendsFeedbackDetection()
    {
        auto model = make(AppModel::Mode::inert);
        model->setCalibrating(true);
        QVERIFY(model->meter().suspendsFeedbackDetection());
        model->setCalibrating(false);
        QVERIFY(!model->meter().suspendsFeedbackDetection());
    }

    void displaySettingsReachTheMeter()
    {
        auto model = make(AppModel::Mode::inert);
        model->start();
        model->settings().display().setGraphDuration(30.0);
        model->settings().display().setFeedbackWarningEnabled(false);
        settle();
        QCOMPARE(model->meter().graphDuration(), 30.0);
        QVERIFY(!model->meter().detectsFeedback());
    }

    void intervalsFromTheInputReachTheMeter()
    {
        auto model = make(AppModel::Mode::live);
        QTRY_COMPARE(model->audio().status(), AudioInput::Status::running);
        std::vector<float> frames(2 * 4800, 0.1f);
        AudioBufferView view {reinterpret_cast<const std::byte*>(frames.data()), 4800, 2,
            AudioBufferView::SampleFormat::float32};
        backend->tap(view);
        QTRY_VERIFY(model->meter().level().has_value());
    }

    void startingAgainAddsNoSecondSetOfObservers()
    {
        auto model = make(AppModel::Mode::inert);
        model->start();
        model->start();
        model->start();
        QCOMPARE(model->measurementApplyCount(), 1);
        model->settings().measurement().setWeighting(FrequencyWeighting::z);
        settle();
        QCOMPARE(model->measurementApplyCount(), 2);
    }

    void quittingWithoutASessionLeavesTheErrorMessageAlone()
    {
        auto model = make(AppModel::Mode::live);
        QTRY_VERIFY(model->hasStarted());
        QSignalSpy spy(model.get(), &AppModel::errorMessageChanged);
        model->applicationWillTerminate();
        QVERIFY(!model->hasError());
        model->setErrorMessage(QString("The disk is full."));
        model->applicationWillTerminate();
        QCOMPARE(model->errorMessage(), QString("The disk is full."));
        QCOMPARE(spy.count(), 1);
    }

    void anErrorMessageIsClearedByDismissal()
    {
        auto model = make(AppModel::Mode::inert);
        QSignalSpy spy(model.get(), &AppModel::errorMessageChanged);
        model->setErrorMessage(QString("The disk is full."));
        QVERIFY(model->hasError());
        model->setErrorMessage(std::nullopt);
        QVERIFY(!model->hasError());
        model->setErrorMessage(QString("The disk is full."));
        QCOMPARE(spy.count(), 3);
    }
};

QTEST_GUILESS_MAIN(AppModelTest)
#include "AppModelTest.moc"
