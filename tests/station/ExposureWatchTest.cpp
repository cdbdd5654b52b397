// The station's exposure watch: the profile from the settings, recomputed when it changes, one
// alert each time the limit is passed, naming the cue that was playing.
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "measurement/SPLMath.h"
#include "station/ExposureWatch.h"

using namespace ostrel;

namespace {

// A tenth of a second at a steady A-weighted level, as the pipeline closes it.
MeasurementInterval intervalAt(double level)
{
    MeasurementInterval interval;
    interval.sampleCount = 4800;
    interval.sampleRate = 48000.0;
    interval.exposureEnergy = SPLMath::power(level) * 4800.0;
    interval.exposurePeakPower = SPLMath::power(level + 12.0);
    return interval;
}

} // namespace

class ExposureWatchTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<ExposureSettings> exposure;

private slots:
    void init()
    {
        // The group and the store write into what comes before them: they go first.
        exposure.reset();
        settings.reset();
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        settings = std::make_unique<SettingsStore>(*store);
        exposure = std::make_unique<ExposureSettings>(*settings);
    }

    void theWindowFollowsTheIntervalsEnergyWhateverTheMeterShows()
    {
        ExposureWatch watch(*exposure, [] { return Date {}; });
        watch.start();
        for (int i = 0; i < 50; ++i)
            watch.ingest(intervalAt(94.0), std::nullopt);
        QVERIFY(std::fabs(*watch.reading().laeqWindow - 94.0) < 1e-9);
        QVERIFY(std::fabs(*watch.reading().lcpeak - 106.0) < 1e-9);
        QCOMPARE(watch.reading().windowSeconds, 5.0);
    }

    void passingTheLimitRaisesOneAlertThatNamesTheCue()
    {
        ExposureWatch watch(*exposure, [] { return Date {} + std::chrono::hours(1); });
        watch.start();
        QSignalSpy passed(&watch, &ExposureWatch::limitPassed);
        for (int i = 0; i < 20; ++i)
            watch.ingest(intervalAt(98.0), QStringLiteral("11 Overture"));
        QCOMPARE(passed.count(), 0);
        for (int i = 0; i < 50; ++i)
            watch.ingest(intervalAt(104.0), QStringLiteral("12 Thunder"));
        QCOMPARE(passed.count(), 1);
        QCOMPARE(watch.passings().size(), size_t(1));
        QCOMPARE(watch.passings().front().cue, std::optional<QString>("12 Thunder"));
        QCOMPARE(ExposureWatch::passingText(watch.passings().front()),
            QString("LAeq 15 min passed 100 dB during 12 Thunder"));
        // Below and over again: a second alert.
        for (int i = 0; i < 3000; ++i)
            watch.ingest(intervalAt(70.0), std::nullopt);
        QVERIFY(watch.reading().step != ExposureStep::overLimit);
        for (int i = 0; i < 3000; ++i)
            watch.ingest(intervalAt(110.0), std::nullopt);
        QCOMPARE(passed.count(), 2);
        QCOMPARE(ExposureWatch::passingText(watch.passings().back()),
            QString("LAeq 15 min passed 100 dB"));
    }

    void aChangeOfProfileRecomputesWithoutAReset()
    {
        ExposureWatch watch(*exposure, [] { return Date {}; });
        std::optional<ExposureProfile> told;
        watch.onProfileChanged = [&](const ExposureProfile& profile) { told = profile; };
        watch.start();
        for (int i = 0; i < 100; ++i)
            watch.ingest(intervalAt(90.0), std::nullopt);
        exposure->setProfileKind(ExposureProfileKind::uk);
        QTRY_VERIFY(told.has_value());
        QCOMPARE(told->kind, ExposureProfileKind::uk);
        QCOMPARE(watch.profile().kind, ExposureProfileKind::uk);
        QCOMPARE(watch.reading().showSeconds, 10.0);
        QCOMPARE(ExposureWatch::windowName(watch.profile()), QString("LEX,8h"));
    }

    void aResetStartsTheShowAgain()
    {
        ExposureWatch watch(*exposure, [] { return Date {}; });
        watch.start();
        for (int i = 0; i < 100; ++i)
            watch.ingest(intervalAt(105.0), std::nullopt);
        QCOMPARE(watch.passings().size(), size_t(1));
        watch.reset();
        QVERIFY(watch.passings().empty());
        QVERIFY(!watch.reading().laeqWindow);
    }

    void anIntervalWithoutARateIsIgnored()
    {
        ExposureWatch watch(*exposure, [] { return Date {}; });
        MeasurementInterval empty = intervalAt(90.0);
        empty.sampleRate = 0.0;
        watch.ingest(empty, std::nullopt);
        QVERIFY(!watch.reading().laeqWindow);
    }
};

QTEST_GUILESS_MAIN(ExposureWatchTest)
#include "ExposureWatchTest.moc"
