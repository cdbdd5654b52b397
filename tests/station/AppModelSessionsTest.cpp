// The central model routes intervals and QLab's running cues to the session store, marks each
// cue start on the level graph, and keeps the store's meter setting and correction name current.
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "FakeCaptureBackend.h"
#include "measurement/SPLMath.h"
#include "station/AppModel.h"
#include "support/SteadyInterval.h"

using namespace ostrel;
using ostrel::testsupport::FakeCaptureBackend;

class AppModelSessionsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;

    std::unique_ptr<AppModel> make(AppModel::Mode mode)
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        // No QLab to talk to: the tests publish cues through the client themselves.
        store->setValue("qlabEnabled", false);
        auto fake = std::make_unique<FakeCaptureBackend>();
        fake->devices = {testsupport::device("mic", "Measurement Mic", 1)};
        return std::make_unique<AppModel>(
            mode, std::make_unique<AppSettings>(*store), std::move(fake));
    }

    static QLabCue cue(const QString& id, const QString& number, const QString& name)
    {
        QLabCue result;
        result.id = id;
        result.number = number;
        result.name = name;
        result.type = QStringLiteral("Audio");
        return result;
    }

    static MeasurementInterval interval(double level) { return testsupport::steadyInterval(level); }

private slots:
    void anInertStationNeverArchivesSessionsAndALiveOneDoes()
    {
        QVERIFY(!make(AppModel::Mode::inert)->sessions().archivesSessions());
        QVERIFY(make(AppModel::Mode::live)->sessions().archivesSessions());
    }

    void runningCuesReachTheTrackerAndEachStartMarksTheGraph()
    {
        auto model = make(AppModel::Mode::inert);
        model->qlab().simulate(QLabClientState::connected, QStringLiteral("Show"),
            {cue("A", "12", "Preshow"), cue("B", "", "Thunder")});
        QVERIFY(model->sessions().tracker().activeRecord("A"));
        QVERIFY(model->sessions().tracker().activeRecord("B"));
        const auto& markers = model->meter().markers();
        QCOMPARE(markers.size(), std::size_t(2));
        QStringList labels {markers[0].label, markers[1].label};
        labels.sort();
        // The number, or the name where the cue has none.
        QCOMPARE(labels, (QStringList {"12", "Thunder"}));

        model->qlab().simulate(QLabClientState::connected, QStringLiteral("Show"), {});
        QCOMPARE(model->sessions().history().size(), std::size_t(2));
    }

    void intervalsGoToTheMeterAndTheSessionAlike()
    {
        auto model = make(AppModel::Mode::inert);
        const Date start = std::chrono::system_clock::now();
        model->sessions().start(QStringLiteral("Evening"), start, std::nullopt);
        model->qlab().simulate(
            QLabClientState::connected, QStringLiteral("Show"), {cue("A", "1", "Preshow")});
        for (int tenth = 1; tenth <= 20; ++tenth)
            model->ingest(interval(80.0), addingSeconds(start, tenth / 10.0));
        const auto session = model->sessions().sessionForExport(addingSeconds(start, 2.0));
        QVERIFY(session);
        QCOMPARE(session->statistics.maxLevel, std::optional<double>(80.0));
        QCOMPARE(session->levels.size(), std::size_t(1));
        QVERIFY(model->sessions().tracker().activeRecord("A")->statistics.maxLevel);
        QCOMPARE(model->meter().statistics().maxLevel, std::optional<double>(80.0));
    }

    void theStoreFollowsTheMeterSettingCorrectionAndLevelHistorySwitch()
    {
        auto model = make(AppModel::Mode::inert);
        model->start();
        QCOMPARE(model->sessions().meterSetting(), model->settings().measurement().meterSetting());
        QVERIFY(!model->sessions().microphoneCorrectionName());

        model->settings().measurement().setWeighting(FrequencyWeighting::c);
        model->settings().measurement().setMicrophoneCorrection(
            MicrophoneCorrection("MM-1 #2241", {{20.0, 1.0}, {1000.0, 0.0}, {20000.0, -2.0}}));
        model->settings().sessions().setRecordsLevelHistory(false);
        QTRY_COMPARE(
            model->sessions().meterSetting(), model->settings().measurement().meterSetting());
        QVERIFY(model->sessions().meterSetting().startsWith(QLatin1Char('C')));
        QTRY_COMPARE(model->sessions().microphoneCorrectionName(),
            std::optional<QString>(QStringLiteral("MM-1 #2241")));
        QTRY_VERIFY(!model->sessions().recordsLevelHistory());

        model->settings().measurement().setMicrophoneCorrection(std::nullopt);
        QTRY_VERIFY(!model->sessions().microphoneCorrectionName());
    }
};

QTEST_GUILESS_MAIN(AppModelSessionsTest)
#include "AppModelSessionsTest.moc"
