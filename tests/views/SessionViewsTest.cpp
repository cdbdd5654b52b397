// The session sheets, the cue history and the radio mic views drawn off screen, light and dark,
// at two sizes; the pictures stay in the build tree for a look.
#include <QAbstractItemModel>
#include <QDir>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <map>

#include "app/SampleContent.h"
#include "app/SilentCaptureBackend.h"
#include "measurement/SPLMath.h"
#include "station/AppModel.h"
#include "views/components/Symbols.h"
#include "views/components/Theme.h"
#include "views/recordings/ReplayModel.h"

#include "ScreenshotStation.h"
#include "StationQmlModules.h"

using namespace ostrel;
using namespace ostrel::testsupport;

namespace {

QLabCue cue(const QString& number, const QString& name)
{
    QLabCue result;
    result.id = name;
    result.number = number;
    result.name = name;
    result.type = QStringLiteral("Audio");
    return result;
}

// The commonest clearly coloured pixel of `area`: the colour of its text and symbol.
QColor dominantBright(const QImage& image, QRect area)
{
    std::map<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.hsvSaturation() > 120 && colour.value() > 150) ++counts[colour.rgb()];
        }
    QRgb best = 0;
    int most = 0;
    for (const auto& [rgb, count] : counts)
        if (count > most) {
            best = rgb;
            most = count;
        }
    return QColor(best);
}

} // namespace

// A live station that has recorded a half-minute show of a tone with two cues.
struct RecordedStation {
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<AppModel> model;

    explicit RecordedStation(AppearanceMode appearance)
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        store->setValue("qlabEnabled", false);
        model = std::make_unique<AppModel>(AppModel::Mode::live,
            std::make_unique<AppSettings>(*store), std::make_unique<SilentCaptureBackend>(),
            QLabClient::Timings {}, folder.filePath("Sessions"));
        model->settings().display().setAppearance(appearance);
        // The calibration reaches the pipeline when the station starts.
        model->start();
        // Half a minute of show, dated as if it had taken half a minute.
        const Date start = std::chrono::system_clock::now();
        int b = 0;
        const auto at = [&] { return addingSeconds(start, 0.02 * b); };
        model->audio().pipeline()->setClock(at);
        model->shows().startSession(QStringLiteral("Friday Night Performance"), start);
        std::vector<float> block(960);
        for (; b < 50 * 30; ++b) {
            if (b == 50 * 4) model->shows().updateRunningCues({cue("1", "Overture")}, at());
            if (b == 50 * 18) model->shows().updateRunningCues({cue("2", "Storm")}, at());
            // A tone that swells and falls, so the level graph has a shape.
            const double gain = 0.02 + 0.08 * (0.5 + 0.5 * std::sin(b / 80.0));
            for (int i = 0; i < 960; ++i)
                block[i] = static_cast<float>(
                    gain * std::sin(2.0 * M_PI * 1000.0 * (b * 960 + i) / 48000.0));
            if (auto interval = model->audio().pipeline()->process(block))
                model->ingest(*interval, at());
        }
        model->shows().finishSession(at());
    }
};

class SessionViewsTest : public QObject {
    Q_OBJECT

private slots:
    void theRecordingsWindowReplaysAShow_data()
    {
        QTest::addColumn<int>("appearance");
        QTest::addColumn<QSize>("size");
        QTest::newRow("light 1180x760") << int(AppearanceMode::light) << QSize(1180, 760);
        QTest::newRow("dark 1180x760") << int(AppearanceMode::dark) << QSize(1180, 760);
        QTest::newRow("dark 1600x1000") << int(AppearanceMode::dark) << QSize(1600, 1000);
    }

    void theRecordingsWindowReplaysAShow()
    {
        QFETCH(int, appearance);
        QFETCH(QSize, size);
        RecordedStation station(static_cast<AppearanceMode>(appearance));
        QQmlApplicationEngine engine;
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.setInitialProperties(
            {{QStringLiteral("appModel"), QVariant::fromValue(station.model.get())}});
        engine.load(QUrl(QStringLiteral("qrc:/Ostrel/Recordings/RecordingsWindow.qml")));
        QVERIFY(!engine.rootObjects().isEmpty());
        auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
        QVERIFY(window);
        auto* theme
            = engine.singletonInstance<Theme*>(qmlTypeId("Ostrel.Components", 1, 0, "Theme"));
        if (theme) theme->setDark(appearance == int(AppearanceMode::dark));
        window->resize(size);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        auto* recordings = window->property("recordings").value<QObject*>();
        QVERIFY(recordings);
        QTRY_VERIFY(qobject_cast<QAbstractItemModel*>(recordings)->rowCount() == 1);
        QMetaObject::invokeMethod(recordings, "select", Q_ARG(int, 0));
        QTRY_VERIFY(recordings->property("showsReplay").toBool());
        auto* replay = window->findChild<QObject*>(QStringLiteral("overviewStrip"));
        QVERIFY(replay);
        auto* replayModel = window->findChild<ReplayModel*>();
        QVERIFY(replayModel && replayModel->isOpen());
        replayModel->seekFraction(0.7);
        QTRY_VERIFY2(!replayModel->levelTrace().isEmpty(),
            qPrintable(QStringLiteral("overview %1, duration %2")
                           .arg(replayModel->meter() ? 1 : 0)
                           .arg(replayModel->durationText())));
        QCOMPARE(replayModel->currentCueName(), QString("Storm"));
        QSignalSpy frames(window, &QQuickWindow::frameSwapped);
        window->requestUpdate();
        frames.wait(2000);
        QTest::qWait(200);
        const QImage image = window->grabWindow();
        save(image,
            QStringLiteral("recordings-%1-%2x%3.png")
                .arg(appearance == int(AppearanceMode::dark) ? "dark" : "light")
                .arg(size.width())
                .arg(size.height()));
        // The playhead stands at 70 % of the strip.
        auto* playhead = window->findChild<QQuickItem*>(QStringLiteral("playhead"));
        auto* strip = qobject_cast<QQuickItem*>(replay);
        QVERIFY(playhead && strip);
        QVERIFY(std::abs(playhead->x() + 1.0 - 0.7 * strip->width()) < 1.0);
        QVERIFY(drawnPixels(image, sceneRect(strip).intersected(image.rect())) > 100);
        // The spectrum panel follows the player's meter: the recorded 1 kHz tone stands out.
        auto* spectrum = window->findChild<QQuickItem*>(QStringLiteral("replaySpectrum"));
        QVERIFY(spectrum && spectrum->isVisible());
        QVERIFY(drawnPixels(image, sceneRect(spectrum).intersected(image.rect())) > 100);
    }

    void initTestCase()
    {
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Symbols::installFont();
    }

    void theNewSessionSheetComesUpOverTheWindow_data()
    {
        QTest::addColumn<int>("appearance");
        QTest::addColumn<QSize>("size");
        QTest::newRow("light 560x720") << int(AppearanceMode::light) << QSize(560, 720);
        QTest::newRow("dark 560x720") << int(AppearanceMode::dark) << QSize(560, 720);
        QTest::newRow("dark 1120x1440") << int(AppearanceMode::dark) << QSize(1120, 1440);
    }

    void theNewSessionSheetComesUpOverTheWindow()
    {
        QFETCH(int, appearance);
        QFETCH(QSize, size);
        Station station(static_cast<AppearanceMode>(appearance));
        QVERIFY(station.window);
        station.model->requestNewSession();
        const QImage image = station.render(size);
        QVERIFY(!image.isNull());
        auto* sheet = station.find("newSessionSheet");
        QVERIFY(sheet);
        QVERIFY(sheet->property("visible").toBool());
        QCOMPARE(sheet->property("width").toDouble(), 400.0);
        auto* name = station.find("sessionName");
        QVERIFY(name);
        QCOMPARE(name->property("placeholderText").toString(), QString("Friday Night Performance"));
        const QRect area = sceneRect(name).adjusted(0, -120, 0, 80);
        QVERIFY(drawnPixels(image, area.intersected(image.rect())) > 200);
        save(image,
            QStringLiteral("new-session-%1-%2x%3.png")
                .arg(appearance == int(AppearanceMode::dark) ? "dark" : "light")
                .arg(size.width())
                .arg(size.height()));
    }

    // One red dropout and one orange low battery under the current cue.
    void theMainScreenShowsMicAlertsUnderTheCue()
    {
        Station station(AppearanceMode::dark);
        QVERIFY(station.window);
        const Date now = std::chrono::system_clock::now();
        SampleContent::feed(*station.model, now);
        station.model->qlab().simulate(QLabClientState::connected, "Show", {cue("12", "Storm")});
        station.model->mics().simulate(
            {MicIssue {"A#1", "Lead Vox", MicIssueKind::dropout, now},
                MicIssue {"B#3", "Ensemble 3", MicIssueKind::lowBattery, now}},
            std::nullopt);
        const QImage image = station.render(QSize(560, 720));
        QVERIFY(!image.isNull());
        auto* alerts = qobject_cast<QQuickItem*>(station.find("micAlerts"));
        QVERIFY(alerts);
        QVERIFY(alerts->isVisible());
        const auto rows = itemsNamed(alerts, QStringLiteral("micAlert"));
        QCOMPARE(rows.size(), 2);
        const QRect red = sceneRect(rows[0]).intersected(image.rect());
        const QRect orange = sceneRect(rows[1]).intersected(image.rect());
        QVERIFY(!red.isEmpty() && !orange.isEmpty());
        QVERIFY(red.bottom() < orange.top());
        // The dropout's row is red and the battery's orange, over the dark background.
        const QColor redText = dominantBright(image, red);
        const QColor orangeText = dominantBright(image, orange);
        QVERIFY2(redText.red() > 180 && redText.green() < 120, qPrintable(redText.name()));
        QVERIFY2(orangeText.red() > 180 && orangeText.green() > 100 && orangeText.blue() < 120,
            qPrintable(orangeText.name()));
        save(image, QStringLiteral("mic-alerts-dark-560x720.png"));
    }

    void theMicSettingsPageListsReceiversOfEachKind()
    {
        Station station(AppearanceMode::light);
        QVERIFY(station.window);
        station.model->mics().addReceiver(
            MicReceiver {QUuid::createUuid(), MicReceiverKind::g4, "192.168.1.50", "Rack A"},
            std::nullopt);
        station.model->mics().addReceiver(
            MicReceiver {QUuid::createUuid(), MicReceiverKind::ewdx, "192.168.1.60", "Rack B"},
            std::nullopt);
        auto* settings = qobject_cast<QQuickWindow*>(station.find("settingsWindow"));
        QVERIFY(settings);
        QVariant shown;
        QMetaObject::invokeMethod(settings, "showPage", Q_RETURN_ARG(QVariant, shown),
            Q_ARG(QVariant, QStringLiteral("Mics")));
        QVERIFY(shown.toBool());
        settings->show();
        QVERIFY(QTest::qWaitForWindowExposed(settings));
        QTest::qWait(300);
        const QImage image = settings->grabWindow();
        const auto rows = itemsNamed(settings->contentItem(), QStringLiteral("receiverRow"));
        QCOMPARE(rows.size(), 2);
        QVERIFY(drawnPixels(image, sceneRect(rows[0]).intersected(image.rect())) > 100);
        QVERIFY(drawnPixels(image, sceneRect(rows[1]).intersected(image.rect())) > 100);
        const auto empty = itemsNamed(settings->contentItem(), QStringLiteral("noReceivers"));
        QVERIFY(empty.size() == 1 && !empty.front()->isVisible());
        save(image, QStringLiteral("mic-settings-light-500x560.png"));
    }

    void theAddReceiverSheetAsksAnEWDXForItsPassword()
    {
        Station station(AppearanceMode::light);
        QVERIFY(station.window);
        auto* settings = qobject_cast<QQuickWindow*>(station.find("settingsWindow"));
        QVERIFY(settings);
        auto* page = settings->property("micPage").value<QObject*>();
        QVERIFY(page);
        auto* sheet = page->property("addSheet").value<QObject*>();
        QVERIFY(sheet);
        auto* form = sheet->property("form").value<QObject*>();
        QVERIFY(form);
        form->setProperty("kindIndex", 1);
        form->setProperty("host", "192.168.1.60");
        form->setProperty("label", "Rack B");
        QMetaObject::invokeMethod(settings, "showPage", Q_ARG(QVariant, QStringLiteral("Mics")));
        settings->show();
        QVERIFY(QTest::qWaitForWindowExposed(settings));
        QMetaObject::invokeMethod(sheet, "open");
        QTest::qWait(400);
        const QImage image = settings->grabWindow();
        // Popups are drawn on the window's overlay, an item under its content item.
        QQuickItem* overlay = settings->contentItem();
        const auto password = itemsNamed(overlay, QStringLiteral("receiverPassword"));
        QVERIFY(password.size() == 1 && password.front()->isVisible());
        const auto adds = itemsNamed(overlay, QStringLiteral("addButton"));
        QVERIFY(adds.size() == 1 && adds.front()->isEnabled());
        QQuickItem* add = adds.front();
        QVERIFY(drawnPixels(image, sceneRect(sheet).intersected(image.rect())) > 400);
        save(image, QStringLiteral("add-receiver-light-500x560.png"));
        form->setProperty("host", "  ");
        QVERIFY(!add->isEnabled());
    }

    void theSummaryComesUpWhenTheShowEnds_data() { theNewSessionSheetComesUpOverTheWindow_data(); }

    void theSummaryComesUpWhenTheShowEnds()
    {
        QFETCH(int, appearance);
        QFETCH(QSize, size);
        Station station(static_cast<AppearanceMode>(appearance));
        QVERIFY(station.window);
        // Fifty minutes of a show that ends now.
        Date at = addingSeconds(std::chrono::system_clock::now(), -3000.0);
        station.model->shows().startSession("Friday Night Performance", at);
        station.model->qlab().simulate(QLabClientState::connected, "Show", {cue("1", "Overture")});
        // One interval a second is enough for the figures, and quick to feed.
        for (int i = 0; i < 2999; ++i) {
            at = addingSeconds(at, 1.0);
            MeasurementInterval interval;
            interval.sampleCount = 4800;
            interval.level = 78.0 + (i % 20) * 0.3;
            interval.energy = SPLMath::power(interval.level) * 4800.0;
            interval.peakPower = SPLMath::power(interval.level + 6.0);
            interval.maxLevel = interval.level + 1.0;
            interval.rawEnergy = SPLMath::power(-20.0) * 4800.0;
            station.model->ingest(interval, at);
        }
        station.model->qlab().simulate(QLabClientState::connected, "Show", {});
        station.model->endSession();
        const QImage image = station.render(size);
        auto* summary = station.find("sessionSummary");
        QVERIFY(summary);
        QVERIFY(summary->property("visible").toBool());
        QCOMPARE(summary->property("width").toDouble(), 420.0);
        save(image,
            QStringLiteral("session-summary-%1-%2x%3.png")
                .arg(appearance == int(AppearanceMode::dark) ? "dark" : "light")
                .arg(size.width())
                .arg(size.height()));
        QVERIFY(drawnPixels(image, sceneRect(summary).intersected(image.rect())) > 400);
    }
};

QTEST_MAIN(SessionViewsTest)
#include "SessionViewsTest.moc"
