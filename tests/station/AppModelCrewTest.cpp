// The station in a crew: a secondary mirrors the primary's readings with its own inputs held
// off, and gets them back when it leaves the role; a primary publishes what its screen shows.
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "FakeCaptureBackend.h"
#include "station/AppModel.h"
#include "support/SteadyInterval.h"

using namespace ostrel;
using testsupport::FakeCaptureBackend;

namespace {

QLabCue runningCue(const QString& id, const QString& number, const QString& name, double elapsed)
{
    QLabCue cue;
    cue.id = id;
    cue.number = number;
    cue.name = name;
    cue.type = QStringLiteral("Audio");
    cue.actionElapsed = elapsed;
    cue.startedAt = Date {} + std::chrono::hours(24 * 365 * 56);
    return cue;
}

MirrorState primaryState()
{
    MirrorState state;
    state.station = QStringLiteral("FOH");
    state.meterSetting = QStringLiteral("C / Slow");
    state.isCalibrated = true;
    state.statistics.energy = 48000.0 * 1e9;
    state.statistics.sampleCount = 48000;
    state.statistics.duration = 1.0;
    state.statistics.peakPower = 1e10;
    state.statistics.maxLevel = 96.5;
    state.qlabState = QLabClientState::connected;
    state.workspace = QStringLiteral("Main Show");
    state.cues = {runningCue("C-1", "12", "Thunder", 1.0)};
    state.timecodeFallbackRate = TimecodeRates::rawValue(TimecodeRate::fps30);
    return state;
}

} // namespace

class AppModelCrewTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    FakeCaptureBackend* capture = nullptr;

    std::unique_ptr<AppModel> make(AppModel::Mode mode, const QString& role = "standalone")
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->clear();
        store->setValue("qlabEnabled", false);
        store->setValue("danteMonitoringEnabled", false);
        store->setValue("crewRole", role);
        store->setValue("stationName", "Desk");
        auto fake = std::make_unique<FakeCaptureBackend>();
        fake->devices = {testsupport::device("mic", "Measurement Mic", 1)};
        capture = fake.get();
        return std::make_unique<AppModel>(mode, std::make_unique<AppSettings>(*store),
            std::move(fake), QLabClient::Timings {}, folder.filePath("Sessions"));
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

private slots:
    void aStandaloneStationIsLiveAndNotASecondary()
    {
        auto model = make(AppModel::Mode::live);
        model->start();
        QVERIFY(!model->isSecondary());
        QVERIFY(model->isMirrorLive());
        QCOMPARE(model->crew().role(), CrewRole::standalone);
    }

    void changingTheStationNameOnAPrimaryDoesNotResetTheMeter()
    {
        auto model = make(AppModel::Mode::live, "primary");
        model->start();
        model->ingest(testsupport::steadyInterval(80.0), model->currentDate());
        QVERIFY(!model->meter().statistics().isEmpty());
        QSignalSpy resets(&model->meter(), &MeterModel::statisticsChanged);
        model->settings().crew().setStationName("FOH desk");
        settle();
        QCOMPARE(model->crew().stationName(), QString("FOH desk"));
        QVERIFY(!model->meter().statistics().isEmpty());
        QCOMPARE(resets.count(), 0);
    }

    void goingFromStandaloneToPrimaryResetsNothingAndKeepsTheAudioRunning()
    {
        auto model = make(AppModel::Mode::live);
        model->start();
        QVERIFY(capture->running);
        model->ingest(testsupport::steadyInterval(80.0), model->currentDate());
        const int stops = capture->stops;
        model->settings().crew().setRole(CrewRole::primary);
        settle();
        QCOMPARE(model->crew().role(), CrewRole::primary);
        QVERIFY(capture->running);
        QCOMPARE(capture->stops, stops);
        QVERIFY(!model->meter().statistics().isEmpty());
    }

    void goingFromPrimaryToSecondaryStopsTheInputResetsTheMeterAndShowsQLabConnecting()
    {
        auto model = make(AppModel::Mode::live, "primary");
        model->start();
        model->qlab().simulate(QLabClientState::connected, QStringLiteral("Main Show"),
            {runningCue("C-1", "1", "Preshow", 3.0)});
        model->ingest(testsupport::steadyInterval(80.0), model->currentDate());
        QSignalSpy secondary(model.get(), &AppModel::isSecondaryChanged);
        model->settings().crew().setRole(CrewRole::secondary);
        settle();
        QVERIFY(model->isSecondary());
        QCOMPARE(secondary.count(), 1);
        QVERIFY(!capture->running);
        QVERIFY(model->meter().statistics().isEmpty());
        QCOMPARE(model->qlab().state(), QLabClientState::connecting);
        QVERIFY(model->qlab().runningCues().empty());
        QVERIFY(!model->qlab().workspaceName());
        // Its own microphone no longer counts.
        model->ingest(testsupport::steadyInterval(80.0), model->currentDate());
        QVERIFY(model->meter().statistics().isEmpty());
    }

    void aSecondaryShowsThePrimarysIntervalsAndStateInItsOwnObjects()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->start();
        model->ingestMirrored(testsupport::steadyInterval(84.0));
        QVERIFY(model->meter().level().has_value());
        MirrorState state = primaryState();
        state.micIssues = {MicIssue {QStringLiteral("r#1"), QStringLiteral("LEAD"),
            MicIssueKind::dropout, model->currentDate()}};
        state.micNames = {QStringLiteral("LEAD"), QStringLiteral("SCROOGE")};
        state.showsMics = true;
        state.showsDante = true;
        state.danteDevices = {DanteDevice {QStringLiteral("Stage-Box-1"), {}, {}, {}, {}, true,
            model->currentDate(), model->currentDate()}};
        model->applyMirror(state);
        // The Dante roster reaches its list at the next turn of the event loop.
        settle();
        QCOMPARE(model->meter().statistics(), state.statistics);
        QCOMPARE(model->qlab().state(), QLabClientState::connected);
        QCOMPARE(model->qlab().runningCues().size(), size_t(1));
        QCOMPARE(model->qlab().workspaceName(), std::optional<QString>("Main Show"));
        QCOMPARE(model->dante().devices().size(), size_t(1));
        QCOMPARE(model->mics().issues(), state.micIssues);
        QCOMPARE(model->micNames(), state.micNames);
        QVERIFY(model->showsMicAlerts());
        QVERIFY(model->showsDante());
        QVERIFY(!model->mics().isEnabled());
    }

    void aMirroredMeterSettingWithASlashShowsItsTwoPieces()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->start();
        model->applyMirror(primaryState());
        QCOMPARE(model->displayMeterSetting().weighting, QString("C"));
        QCOMPARE(model->displayMeterSetting().response, QString("SLOW"));
        MirrorState state = primaryState();
        state.meterSetting = QStringLiteral("Z-weighted");
        model->applyMirror(state);
        QCOMPARE(model->displayMeterSetting().weighting, QString("Z-weighted"));
        QCOMPARE(model->displayMeterSetting().response, QString());
    }

    void offASecondaryTheMeterCornerShowsTheStationsOwnSetting()
    {
        auto model = make(AppModel::Mode::live);
        model->start();
        model->settings().measurement().setWeighting(FrequencyWeighting::c);
        model->settings().measurement().setResponse(TimeWeighting::slow);
        QCOMPARE(model->displayMeterSetting().weighting, QString("C"));
        QCOMPARE(model->displayMeterSetting().response, QString("SLOW"));
    }

    void anUnknownMirroredTimecodeRateFallsBackToTheLocalSetting()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->settings().qlab().setTimecodeFallbackRate(TimecodeRate::fps25);
        model->start();
        model->applyMirror(primaryState());
        QCOMPARE(model->timecodeFallbackRate(), TimecodeRate::fps30);
        MirrorState state = primaryState();
        state.timecodeFallbackRate = 9;
        model->applyMirror(state);
        QCOMPARE(model->timecodeFallbackRate(), TimecodeRate::fps25);
    }

    void aSecondaryWaitingForItsPrimaryShowsNoCalibrationWarning()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->start();
        QVERIFY(!model->settings().measurement().isCalibrated());
        QVERIFY(model->displayIsCalibrated());
        QVERIFY(!model->showsDante());
        QVERIFY(!model->showsMicAlerts());
        MirrorState state = primaryState();
        state.isCalibrated = false;
        model->applyMirror(state);
        QVERIFY(!model->displayIsCalibrated());
    }

    void aStateWithFiftyOneDanteEventsCarriesTheFirstFifty()
    {
        auto model = make(AppModel::Mode::live, "primary");
        model->start();
        std::vector<DanteEvent> events;
        for (int i = 0; i < 51; ++i) {
            events.push_back(DanteEvent {QUuid::createUuid(), QStringLiteral("Box-%1").arg(i),
                DanteEvent::Kind::droppedOut, addingSeconds(model->currentDate(), -i)});
        }
        model->dante().simulate(DanteRoster({}, events));
        const MirrorState state = model->mirrorState();
        QCOMPARE(state.danteEvents.size(), size_t(50));
        const auto& held = model->dante().events();
        QVERIFY(std::equal(state.danteEvents.begin(), state.danteEvents.end(), held.begin()));
    }

    void aStateIdenticalToTheLastTouchesNeitherQLabNorDanteButRestoresTheStatistics()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->start();
        model->applyMirror(primaryState());
        settle();
        QSignalSpy qlabState(&model->qlab(), &QLabClient::stateChanged);
        QSignalSpy workspace(&model->qlab(), &QLabClient::workspaceNameChanged);
        QSignalSpy cues(&model->qlab(), &QLabClient::runningCuesChanged);
        QSignalSpy roster(&model->dante(), &DanteMonitor::rosterChanged);
        model->meter().resetStatistics();
        QVERIFY(model->meter().statistics().isEmpty());
        model->applyMirror(primaryState());
        settle();
        QCOMPARE(qlabState.count() + workspace.count() + cues.count(), 0);
        QCOMPARE(roster.count(), 0);
        QCOMPARE(model->meter().statistics(), primaryState().statistics);
    }

    void tenMirroredUpdatesOfOneRunningCueGiveOneRecordAndOneMarker()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->start();
        for (int i = 0; i < 10; ++i) {
            MirrorState state = primaryState();
            state.cues = {runningCue("C-1", "12", "Thunder", 1.0 + 0.5 * i)};
            model->applyMirror(state);
            model->ingestMirrored(testsupport::steadyInterval(80.0));
        }
        QCOMPARE(model->meter().markers().size(), size_t(1));
        MirrorState over = primaryState();
        over.cues = {};
        model->applyMirror(over);
        QCOMPARE(model->sessions().history().size(), size_t(1));
        QCOMPARE(model->sessions().history().front().number, QString("12"));
    }

    void mirrorStateCarriesTheTimecodeCueLastBehindTheRunningCues()
    {
        auto model = make(AppModel::Mode::live, "primary");
        model->start();
        QLabCue timecode = runningCue("T-1", "TC", "Show clock", 10.0);
        timecode.type = QStringLiteral("Timecode");
        model->qlab().simulate(QLabClientState::connected, QStringLiteral("Main Show"),
            {timecode, runningCue("C-1", "1", "Preshow", 3.0),
                runningCue("C-2", "2", "Rain", 1.0)});
        const MirrorState state = model->mirrorState();
        QCOMPARE(state.cues.size(), size_t(3));
        QCOMPARE(state.cues.back().id, QString("T-1"));
        QCOMPARE(state.cues.front().id, QString("C-1"));
        QCOMPARE(state.station, QString("Desk"));
        QCOMPARE(state.workspace, std::optional<QString>("Main Show"));
        QCOMPARE(state.meterSetting, model->settings().measurement().meterSetting());
    }

    void aSecondaryIgnoresNewSession()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->start();
        model->requestNewSession();
        QVERIFY(!model->isPresentingNewSession());
        model->settings().crew().setRole(CrewRole::standalone);
        settle();
        model->requestNewSession();
        QVERIFY(model->isPresentingNewSession());
    }

    void onASecondaryTheInputSettingsWaitForTheRoleToGoBack()
    {
        auto model = make(AppModel::Mode::live, "secondary");
        model->start();
        settle();
        QVERIFY(!capture->running);
        const int starts = capture->starts;
        model->settings().input().setChannel(1);
        model->settings().mics().setMonitoringEnabled(true);
        settle();
        QCOMPARE(capture->starts, starts);
        QVERIFY(!capture->running);
        QVERIFY(!model->mics().isEnabled());
        model->settings().crew().setRole(CrewRole::standalone);
        settle();
        QVERIFY(capture->running);
        QVERIFY(model->mics().isEnabled());
        QVERIFY(model->mirror() == std::nullopt);
    }

    void inADemoASecondaryStopsTheSimulatorAndLeavingStartsItFromTheFirstCue()
    {
        auto model = make(AppModel::Mode::demo, "secondary");
        model->start();
        settle();
        QVERIFY(model->simulator());
        QVERIFY(!model->simulator()->isRunning());
        QVERIFY(model->dante().devices().empty());
        QVERIFY(model->mics().issues().empty());
        model->settings().crew().setRole(CrewRole::standalone);
        settle();
        QVERIFY(model->simulator()->isRunning());
        QCOMPARE(model->simulator()->cueIndex(), size_t(0));
        QCOMPARE(model->dante().devices().size(), size_t(6));
        QCOMPARE(model->mics().issues().size(), size_t(1));
    }

    void anInertStationNeverJoinsACrew()
    {
        auto model = make(AppModel::Mode::inert, "primary");
        model->start();
        QCOMPARE(model->crew().role(), CrewRole::standalone);
    }
};

QTEST_GUILESS_MAIN(AppModelCrewTest)
#include "AppModelCrewTest.moc"
