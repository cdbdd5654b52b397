// The main screen with the Dante widget and a device offline, and the Dante Devices window with
// its dropout log, drawn off screen, light and dark; the pictures stay in the build tree.
#include <QQuickStyle>

#include "ScreenshotStation.h"
#include "StationQmlModules.h"
#include "app/SampleContent.h"
#include "station/DanteWatch.h"
#include "views/components/Symbols.h"
#include "views/components/Theme.h"
#include "views/dante/DanteWidgetModel.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

QString appearanceName(int appearance)
{
    return appearance == int(AppearanceMode::dark) ? QStringLiteral("dark")
                                                   : QStringLiteral("light");
}

// The demo's roster, with Amp-Rack-R back after a short dropout before Stage-Box-2 went, so that
// the log has both kinds.
DanteRoster showRoster(Date now)
{
    DanteRoster roster = DanteWatch::sampleRoster(false, now);
    roster.lost(QStringLiteral("Amp-Rack-R"), addingSeconds(now, -300.0));
    roster.seen(QStringLiteral("Amp-Rack-R"), {}, addingSeconds(now, -296.0));
    roster.lost(QStringLiteral("Stage-Box-2"), addingSeconds(now, -42.0));
    return roster;
}

} // namespace

class DanteViewsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Symbols::installFont();
    }

    void theMainScreenShowsTheDanteWidgetWithADeviceOffline_data()
    {
        QTest::addColumn<int>("appearance");
        QTest::addColumn<QSize>("size");
        QTest::newRow("light 900x720") << int(AppearanceMode::light) << QSize(900, 720);
        QTest::newRow("dark 900x720") << int(AppearanceMode::dark) << QSize(900, 720);
    }

    void theMainScreenShowsTheDanteWidgetWithADeviceOffline()
    {
        QFETCH(int, appearance);
        QFETCH(QSize, size);
        Station station(static_cast<AppearanceMode>(appearance));
        QVERIFY(station.window);
        const Date now = std::chrono::system_clock::now();
        SampleContent::feed(*station.model, now);
        station.model->dante().simulate(showRoster(now));
        const QImage image = station.render(size);
        QVERIFY(!image.isNull());
        auto* widget = station.find("danteWidget");
        QVERIFY(widget);
        QTRY_COMPARE(widget->property("opacity").toDouble(), 1.0);
        auto* model = widget->property("widget").value<DanteWidgetModel*>();
        QVERIFY(model);
        QCOMPARE(model->countText(), QString("5 of 6 online"));
        QCOMPARE(model->detailText(), QString("Stage-Box-2 offline"));
        // The status line stays quiet while the widget has its place.
        auto* status = station.find("danteStatus");
        QVERIFY(status);
        QCOMPARE(status->property("opacity").toDouble(), 0.0);
        QTest::qWait(900);
        const QImage settled = station.window->grabWindow();
        QVERIFY(drawnPixels(settled, sceneRect(widget).intersected(settled.rect())) > 400);
        save(settled,
            QStringLiteral("dante-main-screen-%1-%2x%3.png")
                .arg(appearanceName(appearance))
                .arg(size.width())
                .arg(size.height()));
    }

    void theDanteDevicesWindowListsTheDevicesAndTheDropoutLog_data()
    {
        QTest::addColumn<int>("appearance");
        QTest::newRow("light") << int(AppearanceMode::light);
        QTest::newRow("dark") << int(AppearanceMode::dark);
    }

    void theDanteDevicesWindowListsTheDevicesAndTheDropoutLog()
    {
        QFETCH(int, appearance);
        Station station(static_cast<AppearanceMode>(appearance));
        QVERIFY(station.window);
        station.model->dante().simulate(showRoster(std::chrono::system_clock::now()));
        station.render(QSize(560, 720));
        auto* window = qobject_cast<QQuickWindow*>(station.find("danteDevicesWindow"));
        QVERIFY(window);
        QCOMPARE(window->title(), QString("Dante Devices"));
        QCOMPARE(window->width(), 760);
        QCOMPARE(window->height(), 460);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        auto* table = window->findChild<QQuickItem*>(QStringLiteral("danteDeviceTable"));
        auto* log = window->findChild<QQuickItem*>(QStringLiteral("dropoutList"));
        QVERIFY(table && log);
        QTRY_VERIFY(table->isVisible() && log->isVisible());
        QCOMPARE(table->property("count").toInt(), 6);
        QCOMPARE(log->property("count").toInt(), 3);
        QSignalSpy frames(window, &QQuickWindow::frameSwapped);
        window->requestUpdate();
        frames.wait(2000);
        QTest::qWait(200);
        const QImage image = window->grabWindow();
        QVERIFY(drawnPixels(image, sceneRect(table).intersected(image.rect())) > 400);
        QVERIFY(drawnPixels(image, sceneRect(log).intersected(image.rect())) > 200);
        save(image, QStringLiteral("dante-devices-%1.png").arg(appearanceName(appearance)));
    }
};

QTEST_MAIN(DanteViewsTest)
#include "DanteViewsTest.moc"
