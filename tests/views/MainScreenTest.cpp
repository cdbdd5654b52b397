// The main screen drawn off screen with the station's own QML over an inert model fed with
// sample readings: at the reference size, the narrowest and a wall display.
#include <QAccessible>
#include <QDir>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickView>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <chrono>
#include <memory>
#include <set>

#include "FakeCaptureBackend.h"
#include "app/SampleContent.h"
#include "app/SilentCaptureBackend.h"
#include "station/AppModel.h"
#include "views/components/Symbols.h"
#include "views/main/MonitorLayout.h"

#include "ScreenShots.h"
#include "StationQmlModules.h"

using namespace ostrel;

using namespace ostrel::screens;

class MainScreenTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Symbols::installFont();
    }

    void drawsTheSampleReadings_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("dark");
        QTest::addColumn<double>("scale");
        // The monitor gets the whole window, the toolbar floating over it.
        QTest::newRow("560x720") << QSize(560, 720) << true << 1.0;
        QTest::newRow("280x720") << QSize(280, 720) << false << 0.8;
        QTest::newRow("1680x2160") << QSize(1680, 2160) << true << 3.0;
    }

    void drawsTheSampleReadings()
    {
        QFETCH(QSize, size);
        QFETCH(bool, dark);
        QFETCH(double, scale);

        Station station(AppModel::Mode::inert, dark ? AppearanceMode::dark : AppearanceMode::light);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        Screen screen(*station.model);
        QCOMPARE(screen.view.status(), QQuickView::Ready);
        const QImage image = render(screen, size);
        QCOMPARE(image.size(), size);
        QVERIFY(save(
            image, QStringLiteral("main-screen-%1x%2.png").arg(size.width()).arg(size.height())));

        QQuickItem* number = screen.item("levelNumber");
        QVERIFY(number);
        QCOMPARE(number->property("text").toString(), QStringLiteral("78.4"));
        QVERIFY(number->isVisible());

        QQuickItem* monitor = screen.item("monitorView");
        QVERIFY(monitor);
        auto* layout = qobject_cast<MonitorLayout*>(monitor->property("layout").value<QObject*>());
        QVERIFY(layout);
        QCOMPARE(screen.rectOf("monitorView"), QRect(QPoint(0, 0), size));
        QCOMPARE(layout->scale(), scale);
        QVERIFY(
            std::abs(number->property("font").value<QFont>().pixelSize() - layout->readoutSize())
            <= 1.0);

        // The picture really holds the screen: many colours, the number drawn, a blue line.
        QVERIFY(distinctColours(image) > 20);
        const QRect numberArea = screen.rectOf("levelNumber");
        QVERIFY(!numberArea.isEmpty());
        QVERIFY2(
            contrastingPixels(image, numberArea) > numberArea.width() * numberArea.height() / 50,
            "the level number is not drawn");
        const QRect graphArea = screen.rectOf("levelGraph");
        QVERIFY(!graphArea.isEmpty());
        QVERIFY2(
            bluePixels(image, graphArea) > graphArea.width() / 2, "the level line is not drawn");
        const QRect footerArea = screen.rectOf("statisticsFooter");
        QVERIFY(contrastingPixels(image, footerArea) > 50);
        QCOMPARE(screen.item("noticeView")->isVisible(), false);

        // The QLab status line stands in the top right corner.
        QQuickItem* qlabStatus = screen.item("statusText");
        QVERIFY(qlabStatus);
        QCOMPARE(qlabStatus->property("text").toString(), QStringLiteral("QLab Connected"));
        const QRect statusArea = screen.rectOf("qlabStatus");
        QVERIFY(!statusArea.isEmpty());
        QVERIFY(statusArea.left() > size.width() / 2);
        QVERIFY(statusArea.bottom() < size.height() / 4);
        QVERIFY2(contrastingPixels(image, statusArea) > 20, "the QLab status is not drawn");
    }

    void dimmingDarkensTheMonitorButNotTheToolbar()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::light);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        Screen screen(*station.model);
        const QImage clear = render(screen, QSize(560, 720));
        station.model->settings().display().setScreenBrightness(0.2);
        const QImage dimmed = render(screen, QSize(560, 720));
        QVERIFY(save(dimmed, QStringLiteral("main-screen-dimmed.png")));

        // Black at 0.8 over the readings leaves a fifth of their light.
        const QRect footer = screen.rectOf("statisticsFooter");
        const double before = meanLightness(clear.copy(footer));
        const double after = meanLightness(dimmed.copy(footer));
        QVERIFY2(std::abs(after / before - 0.2) < 0.03,
            qPrintable(QStringLiteral("%1 -> %2").arg(before).arg(after)));
        // The slider that brightens the screen keeps its full light: its brightest pixels (the
        // handle) stay as bright as at full brightness.
        const QRect slider = screen.rectOf("brightnessSlider");
        QVERIFY(!slider.isEmpty());
        const double handleBefore = brightest(clear, slider);
        const double handleAfter = brightest(dimmed, slider);
        QVERIFY2(handleBefore > 0.5 && std::abs(handleAfter - handleBefore) < 0.02,
            qPrintable(QStringLiteral("%1 -> %2").arg(handleBefore).arg(handleAfter)));
    }

    void theToolbarFloatsOverTheReadingsClearOfTheCornersAndTheCaption_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("duringAShow");
        QTest::newRow("480x600") << QSize(480, 600) << false;
        QTest::newRow("480x600 during a show") << QSize(480, 600) << true;
        QTest::newRow("560x720") << QSize(560, 720) << false;
        QTest::newRow("1680x2160 during a show") << QSize(1680, 2160) << true;
    }

    void theToolbarFloatsOverTheReadingsClearOfTheCornersAndTheCaption()
    {
        QFETCH(QSize, size);
        QFETCH(bool, duringAShow);
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        // The session button is at its widest while a show runs: a dot and the running time.
        if (duringAShow) station.model->startSession("Evening");
        Screen screen(*station.model);
        render(screen, size);
        const QRect toolbar = screen.rectOf("toolbar");
        QVERIFY(!toolbar.isEmpty());
        QCOMPARE(toolbar.top(), 0);
        QVERIFY(screen.rectOf("monitorView").contains(toolbar));
        const QRect status = screen.rectOf("qlabStatus");
        const QRect caption = screen.rectOf("currentCueCaption");
        QVERIFY(!status.isEmpty() && !caption.isEmpty());
        QVERIFY2(!toolbar.intersects(status),
            qPrintable(QStringLiteral("toolbar %1..%2, status from %3")
                           .arg(toolbar.left())
                           .arg(toolbar.right())
                           .arg(status.left())));
        QVERIFY2(!toolbar.intersects(caption),
            qPrintable(QStringLiteral("toolbar %1,%2 %3x%4, caption %5,%6 %7x%8")
                           .arg(toolbar.left())
                           .arg(toolbar.top())
                           .arg(toolbar.width())
                           .arg(toolbar.height())
                           .arg(caption.left())
                           .arg(caption.top())
                           .arg(caption.width())
                           .arg(caption.height())));
    }

    void theReadoutGrowsInProportionToTheWindow()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        Screen screen(*station.model);
        // The number's font size, and the height of its drawn glyphs.
        const auto measure = [&screen](QSize size) {
            const QImage image = render(screen, size);
            const QQuickItem* number = screen.item("levelNumber");
            return std::pair {number ? number->property("font").value<QFont>().pixelSize() : 0,
                inkHeight(image, screen.rectOf("levelNumber"))};
        };
        const auto [referenceSize, referenceInk] = measure(QSize(560, 720));
        const auto [doubledSize, doubledInk] = measure(QSize(1120, 1440));
        QCOMPARE(referenceSize, 132);
        QCOMPARE(doubledSize, 264);
        // Rasterising leaves a pixel or two either way.
        QVERIFY(referenceInk > 50);
        QVERIFY2(std::abs(doubledInk - 2 * referenceInk) <= 2,
            qPrintable(QStringLiteral("%1 -> %2").arg(referenceInk).arg(doubledInk)));
    }

    void theBrightnessSliderSpeaksItsNameAndPercent()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        station.model->settings().display().setScreenBrightness(0.6);
        Screen screen(*station.model);
        render(screen, QSize(560, 720));
        QQuickItem* slider = screen.item("brightnessSlider");
        QVERIFY(slider);
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(slider);
        QVERIFY(spoken);
        QCOMPARE(spoken->role(), QAccessible::Slider);
        QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("Screen brightness"));
        QCOMPARE(spoken->text(QAccessible::Description), QStringLiteral("60 percent"));
        QVERIFY(spoken->valueInterface());
        QCOMPARE(spoken->valueInterface()->currentValue().toDouble(), 60.0);
        QCOMPARE(spoken->valueInterface()->minimumValue().toDouble(), 20.0);
        QCOMPARE(spoken->valueInterface()->maximumValue().toDouble(), 100.0);

        // Set by a screen reader, it writes the setting and says the new percentage; a shortcut
        // afterwards still moves it.
        spoken->valueInterface()->setCurrentValue(45);
        QTRY_COMPARE(station.model->settings().display().screenBrightness(), 0.45);
        QTRY_COMPARE(spoken->text(QAccessible::Description), QStringLiteral("45 percent"));
        station.model->settings().display().setScreenBrightness(0.8);
        QTRY_COMPARE(spoken->valueInterface()->currentValue().toDouble(), 80.0);
    }

    void theSampleMarkersAreLabelledAsRunningCuesAre()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        const auto end = std::chrono::system_clock::now();
        SampleContent::feed(*station.model, end);
        QStringList labels;
        for (const auto& marker : station.model->meter().markers())
            labels << marker.label;
        QCOMPARE(labels, (QStringList {"12", "House out", "14"}));
        for (const CueRecord& cue : SampleContent::cues(end))
            QVERIFY(cue.number.isEmpty() || labels.contains(cue.number));
    }

    void aMachineWithoutInputShowsTheNoticeWithoutADeadButtonAndKeepsTheFooter()
    {
        Station station(AppModel::Mode::live, AppearanceMode::dark);
        Screen screen(*station.model);
        QTRY_COMPARE(station.model->audio().status(), AudioInput::Status::deviceUnavailable);
        const QImage image = render(screen, QSize(560, 720));
        QVERIFY(save(image, QStringLiteral("main-screen-no-input.png")));

        QVERIFY(screen.item("noticeView")->isVisible());
        QCOMPARE(screen.item("noticeMessage")->property("text").toString(),
            QStringLiteral("Your selected audio input isn't available."));
        // "Choose Input" opens the input picker.
        QQuickItem* action = screen.item("noticeAction");
        QVERIFY(action->isVisible());
        QCOMPARE(action->property("text").toString(), QStringLiteral("Choose Input"));
        QVERIFY(!screen.item("levelReadout")->isVisible());
        QVERIFY(screen.item("statisticsFooter")->isVisible());
        QVERIFY(contrastingPixels(image, screen.rectOf("noticeMessage")) > 100);
    }

    void aDeniedMicrophoneReplacesTheReadoutWithTheNoticeAndKeepsTheFooter()
    {
        auto backend = std::make_unique<testsupport::FakeCaptureBackend>();
        backend->devices = {testsupport::device("mic", "Measurement Mic", 2)};
        backend->permission = false;
        Station station(AppModel::Mode::live, AppearanceMode::light, std::move(backend));
        Screen screen(*station.model);
        QTRY_COMPARE(station.model->audio().status(), AudioInput::Status::permissionDenied);
        const QImage image = render(screen, QSize(560, 720));
        QVERIFY(save(image, QStringLiteral("main-screen-denied.png")));

        QVERIFY(screen.item("noticeView")->isVisible());
        QCOMPARE(screen.item("noticeMessage")->property("text").toString(),
            QStringLiteral("Ostrel Live needs access to your microphone to measure sound level."));
        QCOMPARE(screen.item("noticeAction")->property("text").toString(),
            QStringLiteral("Open Sound Settings"));
        QVERIFY(!screen.item("levelReadout")->isVisible());
        QVERIFY(!screen.item("readoutColumn")->isVisible());
        QVERIFY(screen.item("statisticsFooter")->isVisible());
        QVERIFY(contrastingPixels(image, screen.rectOf("noticeMessage")) > 100);
    }

    void withoutTheGraphTheFreeSpaceGoesAboveAndBelowTheReadout()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        SampleContent::feed(*station.model, std::chrono::system_clock::now());
        Screen screen(*station.model);
        const QSize size(560, 720);
        render(screen, size);
        auto* layout = qobject_cast<MonitorLayout*>(
            screen.item("monitorView")->property("layout").value<QObject*>());
        QVERIFY(layout);

        // From the row above (mic alerts, empty so far) down to the readout, and from the
        // readout to what follows it: the graph row, or without it the footer's spacing.
        const auto gaps = [&screen, layout] {
            const double readoutTop = screen.sceneY("readoutColumn");
            const double readoutBottom = readoutTop + screen.item("readoutColumn")->height();
            const double next = screen.item("graphRow")->isVisible()
                ? screen.sceneY("graphRow")
                : screen.sceneY("statisticsFooter") - layout->footerSpacing();
            return std::pair {readoutTop - screen.sceneY("micAlertsPlace"), next - readoutBottom};
        };
        const double footerWithGraph = screen.sceneY("statisticsFooter");
        const auto [aboveWithGraph, belowWithGraph] = gaps();
        QVERIFY2(std::abs(aboveWithGraph - belowWithGraph) <= 1.0,
            qPrintable(QStringLiteral("%1 / %2").arg(aboveWithGraph).arg(belowWithGraph)));

        station.model->settings().display().setShowModeShowsGraph(false);
        render(screen, size);
        QVERIFY(!screen.item("graphRow")->isVisible());
        const auto [above, below] = gaps();
        QVERIFY2(std::abs(above - below) <= 1.0,
            qPrintable(QStringLiteral("%1 / %2").arg(above).arg(below)));
        // The footer stays at the bottom; the two spaces share the graph row's room.
        QCOMPARE(screen.sceneY("statisticsFooter"), footerWithGraph);
        QVERIFY2(
            std::abs((above + below) - (aboveWithGraph + belowWithGraph) - layout->graphRowHeight())
                <= 1.0,
            qPrintable(QStringLiteral("%1 + %2 -> %3 + %4")
                           .arg(aboveWithGraph)
                           .arg(belowWithGraph)
                           .arg(above)
                           .arg(below)));
    }

    void dismissingTheAlertClearsTheError()
    {
        Station station(AppModel::Mode::inert, AppearanceMode::dark);
        Screen screen(*station.model);
        render(screen, QSize(560, 720));
        QObject* alert
            = screen.view.rootObject()->findChild<QObject*>(QStringLiteral("errorAlert"));
        QVERIFY(alert);
        QCOMPARE(alert->property("opened").toBool(), false);

        station.model->setErrorMessage(QStringLiteral("The recording couldn't be written."));
        QTRY_VERIFY(alert->property("opened").toBool());
        QCOMPARE(alert->property("title").toString(), QStringLiteral("Something Went Wrong"));
        QVERIFY(save(render(screen, QSize(560, 720)), QStringLiteral("main-screen-alert.png")));

        QMetaObject::invokeMethod(alert, "accept");
        QTRY_VERIFY(!station.model->hasError());
        QTRY_VERIFY(!alert->property("visible").toBool());

        // The same failure later alerts again.
        station.model->setErrorMessage(QStringLiteral("The recording couldn't be written."));
        QTRY_VERIFY(alert->property("opened").toBool());
    }
};

int runMainScreenTests(int argc, char** argv)
{
    MainScreenTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MainScreenTest.moc"
