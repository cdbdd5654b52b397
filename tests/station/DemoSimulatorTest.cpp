// The demo's scripted show: its cues on the QLab client's list, its pace, its levels through the
// real measuring path, the settings it follows, and a demo session recorded like a real one.
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <vector>

#include "app/SilentCaptureBackend.h"
#include "measurement/LevelStatistics.h"
#include "measurement/SPLMath.h"
#include "recording/RecordingFile.h"
#include "recording/RecordingLibrary.h"
#include "station/AppModel.h"
#include "station/DemoSimulator.h"

using namespace ostrel;
using namespace std::chrono_literals;

namespace {

// A clock that moves on a tenth of a second at every reading after the first, as the ticks
// would, however fast the test's timer runs.
struct TickClock {
    Date now = Date {} + std::chrono::hours(24 * 365 * 56);
    bool started = false;

    Date read()
    {
        if (started) now = addingSeconds(now, 0.1);
        started = true;
        return now;
    }
};

struct Tick {
    double seconds; // since the start
    std::size_t cue;
    MeasurementInterval interval;
};

} // namespace

class DemoSimulatorTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QLabClient> qlab;
    std::unique_ptr<DemoSimulator> simulator;
    TickClock clock;
    Date start;
    std::vector<Tick> ticks;

    void make(std::function<double()> driftStep = {})
    {
        clock = {};
        start = clock.now;
        ticks.clear();
        qlab = std::make_unique<QLabClient>();
        DemoSimulator::Options options;
        options.tick = 1ms;
        options.clock = [this] { return clock.read(); };
        options.driftStep = std::move(driftStep);
        simulator = std::make_unique<DemoSimulator>(*qlab, nullptr, options);
        simulator->onInterval = [this](const MeasurementInterval& interval, Date at) {
            ticks.push_back({secondsBetween(start, at), simulator->cueIndex(), interval});
        };
    }

    void runFor(double seconds)
    {
        const auto wanted = static_cast<std::size_t>(std::lround(seconds * 10.0));
        QTRY_VERIFY_WITH_TIMEOUT(ticks.size() >= wanted, 60000);
        simulator->stop();
    }

private slots:
    void theFirstCueIsOnScreenAtOnceBeforeTheFirstBlock()
    {
        make();
        simulator->start();
        QVERIFY(ticks.empty());
        QCOMPARE(qlab->state(), QLabClientState::connected);
        QCOMPARE(qlab->workspaceName(), std::optional<QString>("Demo Show"));
        const auto& cues = qlab->runningCues();
        QCOMPARE(cues.size(), size_t(1));
        QCOMPARE(cues[0].name, QString("House to Half"));
        QCOMPARE(cues[0].id, QString("demo-1"));
        QCOMPARE(cues[0].type, QString("Light"));
        QCOMPARE(cues[0].duration, std::optional<double>(6.0));
        const auto& timecode = qlab->timecodeCue();
        QVERIFY(timecode);
        QCOMPARE(timecode->name, QString("Show Timecode"));
        QCOMPARE(timecode->timecodeStart, std::optional<QString>("01:00:00:00"));
        QCOMPARE(timecode->timecodeRateIndex, std::optional<std::int64_t>(1));
        QCOMPARE(timecode->timecodeOutputType, std::optional<std::int64_t>(1));
        simulator->stop();
    }

    void aCueChangesOnTheFirstTickLaterThanItsDuration()
    {
        make();
        simulator->start();
        runFor(7.0);
        // Ticks at 0.1 s steps: at 6.0 s the first cue has run exactly its six seconds.
        for (const Tick& tick : ticks) {
            if (tick.seconds < 6.05)
                QCOMPARE(tick.cue, size_t(0));
            else
                QCOMPARE(tick.cue, size_t(1));
        }
        QCOMPARE(qlab->runningCues().front().name, QString("Preshow Music Fade"));
    }

    void afterTheFinaleTheScriptReturnsToTheFirstCueAfterSixtyTwoSeconds()
    {
        make();
        simulator->start();
        runFor(64.0);
        std::vector<std::size_t> order;
        double returned = 0.0;
        for (const Tick& tick : ticks) {
            if (order.empty() || order.back() != tick.cue) {
                order.push_back(tick.cue);
                if (order.size() == 6) returned = tick.seconds;
            }
        }
        QCOMPARE(order, (std::vector<std::size_t> {0, 1, 2, 3, 4, 0}));
        // The script's 62 seconds, and each change waits for the first tick past a duration.
        QVERIFY2(returned > 62.0 && returned <= 62.5 + 1e-9, qPrintable(QString::number(returned)));
        QCOMPARE(qlab->runningCues().front().name, QString("House to Half"));
    }

    void theThunderAmbienceStaysWithinSixDecibelsOfItsLevel_data()
    {
        QTest::addColumn<double>("step");
        QTest::newRow("always louder") << 0.8;
        QTest::newRow("always quieter") << -0.8;
        QTest::newRow("beyond the step") << 5.0;
    }

    void theThunderAmbienceStaysWithinSixDecibelsOfItsLevel()
    {
        QFETCH(double, step);
        make([step] { return step; });
        simulator->start();
        runFor(33.0);
        const double noiseShare = 10.0 * std::log10(0.5 + 0.36); // the sine's and the noise's power
        const double sine = 10.0 * std::log10(0.5);
        int thunder = 0;
        for (const Tick& tick : ticks) {
            if (tick.cue != 2) continue;
            ++thunder;
            // The sine's peak level, the noise's power taken out.
            const double level = tick.interval.rawLevelDBFS() - noiseShare;
            QVERIFY2(level >= -24.0 - 6.0 - 0.3 && level <= -24.0 + 6.0 + 0.3,
                qPrintable(QString::number(level)));
            QVERIFY(std::isfinite(level - sine));
        }
        QVERIFY(thunder > 100);
        QCOMPARE(std::fabs(simulator->drift()), 6.0);
    }

    void changingTheWeightingChangesTheReadingAtTheNextBlock()
    {
        make([] { return 0.0; });
        QTemporaryDir folder;
        QSettings store(folder.filePath("s.ini"), QSettings::IniFormat);
        SettingsStore settingsStore(store);
        MeasurementSettings settings(settingsStore);
        settings.setWeighting(FrequencyWeighting::a);
        simulator->configure(settings);
        // Into the Thunder Ambience, whose 55 Hz the A curve mostly takes away, the settings
        // change between two blocks.
        const auto measure = simulator->onInterval;
        simulator->onInterval = [&](const MeasurementInterval& interval, Date at) {
            measure(interval, at);
            if (ticks.size() == 160) {
                settings.setWeighting(FrequencyWeighting::z);
                simulator->configure(settings);
            }
        };
        simulator->start();
        runFor(16.2);
        QCOMPARE(ticks[159].cue, size_t(2));
        QCOMPARE(simulator->processor().weighting(), FrequencyWeighting::z);
        const double weighted = ticks[159].interval.leq();
        const double unweighted = ticks[160].interval.leq();
        QVERIFY2(unweighted > weighted + 3.0,
            qPrintable(QStringLiteral("%1 then %2").arg(weighted).arg(unweighted)));
        // The blocks before the change kept the A curve.
        QVERIFY(std::fabs(ticks[158].interval.leq() - weighted) < 1.5);
    }

    void aDemoSessionLogsTheScriptedCuesAndRecordsLevelsItsReplayShows()
    {
        QTemporaryDir folder;
        QSettings store(folder.filePath("settings.ini"), QSettings::IniFormat);
        store.setValue("recordsSessions", true);
        AppModel model(AppModel::Mode::demo, std::make_unique<AppSettings>(store),
            std::make_unique<SilentCaptureBackend>(), QLabClient::Timings {},
            folder.filePath("Sessions"));
        QVERIFY(model.simulator());
        TickClock demoClock;
        DemoSimulator::Options options;
        options.tick = 1ms;
        options.clock = [&demoClock] { return demoClock.read(); };
        options.driftStep = [] { return 0.3; };
        model.simulator()->setOptions(options);
        // The station reads the same time the simulator makes, without moving it on.
        model.setClock([&demoClock] { return demoClock.now; });
        model.shows().startSession(QStringLiteral("Demo Night"), demoClock.now);
        model.start();
        QVERIFY(model.simulator()->isRunning());
        QCOMPARE(model.audio().status(), AudioInput::Status::stopped);
        QTRY_VERIFY_WITH_TIMEOUT(
            secondsBetween(model.sessions().activeSession()->start, demoClock.now) > 63.0, 60000);
        model.simulator()->stop();
        const auto finished = model.shows().finishSession(demoClock.now);
        QVERIFY(finished);

        // Every cue sent counts as new: the five of the script, each for its scripted time.
        QVERIFY2(finished->cues.size() >= 5, qPrintable(QString::number(finished->cues.size())));
        const auto& script = DemoSimulator::script();
        for (std::size_t i = 0; i < 5; ++i) {
            QCOMPARE(finished->cues[i].name, QString::fromUtf8(script[i].name));
            QVERIFY(finished->cues[i].end.has_value());
            const double duration = finished->cues[i].duration(demoClock.now);
            QVERIFY2(std::fabs(duration - script[i].duration - 0.1) < 0.15,
                qPrintable(QString::number(duration)));
        }

        // The recording holds the demo's sound and frames; the frames give the session's levels.
        const auto recordings = RecordingLibrary::scan(folder.filePath("Sessions"));
        QCOMPARE(recordings.size(), size_t(1));
        QVERIFY(QFileInfo(recordings.front().folder + "/audio.aac").size() > 10000);
        const auto frames = RecordingFile::open(recordings.front().framesPath()).frames;
        QVERIFY(frames);
        QVERIFY(frames->count() > 600);
        LevelStatistics replayed;
        for (qsizetype i = 0; i < frames->count(); ++i)
            replayed.add(frames->frame(i, false)->interval);
        QVERIFY(finished->statistics.leq() && replayed.leq());
        QVERIFY2(std::fabs(*finished->statistics.leq() - *replayed.leq()) < 0.01,
            qPrintable(QStringLiteral("%1 live, %2 replayed")
                           .arg(*finished->statistics.leq())
                           .arg(*replayed.leq())));
        // Frames keep their levels in single precision.
        QVERIFY(std::fabs(*finished->statistics.maxLevel - *replayed.maxLevel) < 0.001);
    }
};

QTEST_GUILESS_MAIN(DemoSimulatorTest)
#include "DemoSimulatorTest.moc"
