// The station in demo mode, drawn off screen during the scripted "Thunder Ambience": the demo's
// cue, timecode, level and spectrum reach the main screen through the real measuring path.
#include <QLocale>
#include <QTest>

#include "ScreenShots.h"
#include "station/DemoSimulator.h"
#include "views/components/Symbols.h"

using namespace ostrel;
using namespace ostrel::screens;
using namespace std::chrono_literals;

class DemoScreenTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Symbols::installFont();
    }

    void theDemoShowsThunderAmbienceOnTheMainScreen()
    {
        Station station(AppModel::Mode::demo, AppearanceMode::dark);
        AppModel& model = *station.model;
        QVERIFY(model.simulator());
        // Twenty seconds into the show in a blink: each tick is a tenth of a second of it.
        // The show runs on a clock of its own that ends near the present, where the views read
        // the running times.
        Date now = addingSeconds(std::chrono::system_clock::now(), -22.0);
        DemoSimulator::Options options;
        options.tick = 1ms;
        options.clock = [&now] { return now = addingSeconds(now, 0.1); };
        options.driftStep = [] { return 0.2; };
        model.simulator()->setOptions(options);
        model.setClock([&now] { return now; });
        model.start();
        const Date start = now;
        // Eight seconds into the Thunder Ambience, which starts after fourteen.
        QTRY_VERIFY_WITH_TIMEOUT(secondsBetween(start, now) > 22.0, 20000);
        model.simulator()->stop();
        QCOMPARE(model.simulator()->cueIndex(), size_t(2));
        QVERIFY(!model.meter().graphPoints().empty());
        QCOMPARE(model.qlab().runningCues().front().name, QString("Thunder Ambience"));

        Screen screen(model);
        const QImage image = render(screen, QSize(1180, 760));
        QVERIFY(!image.isNull());
        QVERIFY(save(image, QStringLiteral("demo-thunder-ambience.png")));
        // The scripted cue is on screen with its timecode, and the spectrum pane has drawn.
        auto* details = screen.item("cueDetails");
        QVERIFY(details && details->isVisible());
        auto* noCue = screen.item("noCuePlaying");
        QVERIFY(!noCue || !noCue->isVisible());
        auto* timecode = screen.item("timecodeValue");
        QVERIFY(timecode && timecode->property("text").toString().startsWith("01:00:"));
        QVERIFY(distinctColours(image) > 40);
        // No audio notice in demo mode, whatever the input does.
        auto* notice = screen.item("noticeMessage");
        QVERIFY(!notice || !notice->isVisible());
    }
};

int runDemoScreenTests(int argc, char** argv)
{
    DemoScreenTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "DemoScreenTest.moc"
