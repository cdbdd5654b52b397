// The microphone correction section of the settings window over an inert station: a calibration
// file chosen in the file dialog opened from its button, a file that fails, and the section drawn
// with its curve.
#include <QAccessible>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "ScreenShots.h"
#include "StationQmlModules.h"
#include "views/components/Symbols.h"
#include "views/components/Theme.h"
#include "views/main/settings/ResponseChart.h"

using namespace ostrel;
using ostrel::screens::Station;

namespace {

const QString calibrationFile = QStringLiteral(OSTREL_TEST_DATA_DIR "/measurement-mic-0deg.txt");
constexpr int calibrationPage = 1;

QQuickItem* itemNamed(QQuickItem* root, const QString& name)
{
    if (!root) return nullptr;
    if (root->objectName() == name) return root;
    for (QQuickItem* child : root->childItems())
        if (QQuickItem* found = itemNamed(child, name)) return found;
    return nullptr;
}

QRect sceneRect(const QQuickItem* item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height())).toAlignedRect();
}

// Pixels of `area` within a small distance of `colour`: the curve, antialiased edges left out.
int pixelsOf(const QImage& image, QRect area, const QColor& colour)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor seen = image.pixelColor(x, y);
            if (std::abs(seen.red() - colour.red()) < 40
                && std::abs(seen.green() - colour.green()) < 40
                && std::abs(seen.blue() - colour.blue()) < 40)
                ++count;
        }
    return count;
}

// Pixels of `area` clearly lighter or darker than its top left corner: small grey text.
int inkPixels(const QImage& image, QRect area)
{
    const int ground = image.pixelColor(area.topLeft()).lightness();
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (std::abs(image.pixelColor(x, y).lightness() - ground) > 40) ++count;
    return count;
}

struct CorrectionStation {
    Station station;
    QQmlApplicationEngine engine;
    QQuickWindow* settings = nullptr;
    QObject* dialog = nullptr;

    explicit CorrectionStation(AppearanceMode appearance)
        : station(AppModel::Mode::inert, appearance)
    {
        station.model->start();
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.setInitialProperties(
            {{QStringLiteral("appModel"), QVariant::fromValue(station.model.get())}});
        engine.load(QUrl(QStringLiteral("qrc:/Ostrel/Main/ContentView.qml")));
        if (engine.rootObjects().isEmpty()) return;
        settings = engine.rootObjects().first()->findChild<QQuickWindow*>(
            QStringLiteral("settingsWindow"));
        if (!settings) return;
        settings->resize(500, 1000);
        settings->setProperty("currentPage", calibrationPage);
        settings->show();
        auto* page = settings->property("calibrationPage").value<QObject*>();
        auto* section = page ? page->property("correction").value<QObject*>() : nullptr;
        dialog = section ? section->property("dialog").value<QObject*>() : nullptr;
    }

    MeasurementSettings& measurement() { return station.model->settings().measurement(); }

    QQuickItem* control(const char* name) const
    {
        return settings ? itemNamed(settings->contentItem(), QLatin1String(name)) : nullptr;
    }

    QString text(const char* name) const
    {
        QQuickItem* item = control(name);
        return item ? item->property("text").toString() : QString();
    }

    QImage grab()
    {
        QSignalSpy frames(settings, &QQuickWindow::frameSwapped);
        settings->requestUpdate();
        frames.wait(2000);
        QTest::qWait(100);
        return settings->grabWindow();
    }

    // A press and release at the control's centre, once it is laid out.
    void click(QQuickItem* item)
    {
        grab();
        const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(settings, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    }

    // The user picks `file` in the dialog that the load button opened, and accepts it.
    bool choose(const QString& file)
    {
        QQuickItem* load = control("loadCorrectionButton");
        if (!load || !dialog) return false;
        click(load);
        if (!QTest::qWaitFor([&] { return dialog->property("visible").toBool(); })) return false;
        // The dialog takes its answer from the file list of its window, as a click there would.
        QObject* list = nullptr;
        for (QObject* child : settings->findChildren<QObject*>())
            if (child->inherits("QQuickFileDialogImpl")) list = child;
        if (!list) return false;
        list->setProperty("currentFolder", QUrl::fromLocalFile(QFileInfo(file).path()));
        list->setProperty("selectedFile", QUrl::fromLocalFile(file));
        QMetaObject::invokeMethod(dialog, "accept");
        return QTest::qWaitFor([&] { return !dialog->property("visible").toBool(); });
    }
};

} // namespace

class CorrectionViewTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        Symbols::installFont();
    }

    void theLoadButtonOpensTheFileDialogAndTheChosenFileIsLoaded()
    {
        CorrectionStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.dialog);
        QCOMPARE(s.text("correctionText"), QStringLiteral("None"));
        QVERIFY(!s.control("coversText")->isVisible());
        QVERIFY(!s.control("removeCorrectionButton")->isVisible());
        QCOMPARE(s.dialog->property("title").toString(),
            QStringLiteral("Choose a Microphone Calibration File"));
        QVERIFY(!s.dialog->property("visible").toBool());

        QVERIFY(s.choose(calibrationFile));
        QTRY_VERIFY(s.measurement().microphoneCorrection().has_value());
        QCOMPARE(s.measurement().microphoneCorrection()->name(), "measurement-mic-0deg.txt");
        QCOMPARE(s.text("correctionText"), QStringLiteral("measurement-mic-0deg.txt"));
        QCOMPARE(s.text("coversText"), QStringLiteral("20.0 Hz \u2013 20.0 kHz, 200 points"));
        QVERIFY(s.control("coversText")->isVisible());
        QVERIFY(s.control("responseChart")->isVisible());
        QVERIFY(!s.control("loadError")->isVisible());

        // Remove takes the correction away and the chart with it.
        QQuickItem* remove = s.control("removeCorrectionButton");
        QVERIFY(remove && remove->isVisible());
        s.click(remove);
        QTRY_VERIFY(!s.measurement().microphoneCorrection().has_value());
        QCOMPARE(s.text("correctionText"), QStringLiteral("None"));
        QVERIFY(!s.control("responseChart")->isVisible());
    }

    void aBadFileChosenInTheDialogShowsTheMessageAndKeepsTheCorrection()
    {
        CorrectionStation s(AppearanceMode::light);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        QVERIFY(s.choose(calibrationFile));
        QTRY_VERIFY(s.measurement().microphoneCorrection().has_value());
        const auto before = s.measurement().microphoneCorrection();

        QTemporaryDir folder;
        QFile bad(folder.filePath("levels.txt"));
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write("Frequency\tLevel\n100\t1\n200\t2\n");
        bad.close();
        QVERIFY(s.choose(bad.fileName()));
        QTRY_VERIFY(s.control("loadError")->isVisible());
        QCOMPARE(s.text("loadErrorText"),
            QStringLiteral("That file has too few frequencies to describe a microphone."));
        QCOMPARE(s.measurement().microphoneCorrection(), before);
        QCOMPARE(s.text("correctionText"), QStringLiteral("measurement-mic-0deg.txt"));

        // Removing the correction clears the message as well.
        s.click(s.control("removeCorrectionButton"));
        QTRY_VERIFY(!s.control("loadError")->isVisible());
        QCOMPARE(s.text("loadErrorText"), QString());
    }

    void theSectionIsDrawnWithTheResponseCurveAndSpeaksItsValues_data()
    {
        QTest::addColumn<int>("appearance");
        QTest::newRow("light") << int(AppearanceMode::light);
        QTest::newRow("dark") << int(AppearanceMode::dark);
    }

    void theSectionIsDrawnWithTheResponseCurveAndSpeaksItsValues()
    {
        QFETCH(int, appearance);
        const auto mode = static_cast<AppearanceMode>(appearance);
        CorrectionStation s(mode);
        QVERIFY(s.settings && QTest::qWaitForWindowExposed(s.settings));
        auto* theme
            = s.engine.singletonInstance<Theme*>(qmlTypeId("Ostrel.Components", 1, 0, "Theme"));
        QVERIFY(theme);
        theme->setDark(mode == AppearanceMode::dark);
        auto* chart = qobject_cast<ResponseChart*>(s.control("responseChart"));
        QVERIFY(chart);
        // Run twice: painted by the software renderer, and as geometry by OpenGL under Xvfb.
        const auto api = s.settings->rendererInterface()->graphicsApi();
        if (qgetenv("OSTREL_EXPECTED_GRAPHICS") == "opengl")
            QCOMPARE(api, QSGRendererInterface::OpenGL);
        else
            QCOMPARE(api, QSGRendererInterface::Software);

        // Without a correction there is no chart to draw.
        QImage image = s.grab();
        QVERIFY(!chart->isVisible());

        QVERIFY(s.choose(calibrationFile));
        QTRY_VERIFY(chart->isVisible());
        image = s.grab();
        const QRect plot = sceneRect(chart).intersected(image.rect());
        QVERIFY(plot.width() > 300 && plot.height() > 100);
        // A line about two pixels thick across the whole plot.
        const int curve = pixelsOf(image, plot, theme->accent());
        QVERIFY2(curve > plot.width(), qPrintable(QString::number(curve)));
        // At 10 kHz the line stands where the file's response, relative to 1 kHz, puts it.
        const auto& correction = *s.measurement().microphoneCorrection();
        const int x = plot.left()
            + static_cast<int>(std::round(ResponseChart::xFor(10000.0, chart->width())));
        const int y = plot.top()
            + static_cast<int>(
                std::round(ResponseChart::yFor(correction.response(10000.0), chart->height())));
        QVERIFY(pixelsOf(image, QRect(x - 1, y - 2, 3, 5), theme->accent()) > 0);
        // And nowhere far from it in that column.
        QCOMPARE(pixelsOf(image, QRect(x, plot.top(), 1, y - plot.top() - 6), theme->accent()), 0);
        // The flat rule and the axes are labelled.
        QCOMPARE(s.text("flatRuleLabel"), QStringLiteral("Flat"));
        const QRect label = sceneRect(s.control("flatRuleLabel"));
        QVERIFY(inkPixels(image, label) > 5);

        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(chart);
        QVERIFY(spoken);
        QCOMPARE(spoken->text(QAccessible::Name),
            QStringLiteral("Microphone response relative to 1 kilohertz"));
        const QString value = spoken->text(QAccessible::Description);
        QCOMPARE(value, ResponseChart::accessibleValue(correction));
        QVERIFY2(value.contains(QString::number(correction.response(50.0), 'f', 1)
                     + QStringLiteral(" dB at 50 hertz, ")),
            qPrintable(value));
        QVERIFY(value.endsWith(QString::number(correction.response(10000.0), 'f', 1)
            + QStringLiteral(" dB at 10 kilohertz")));

        const QString name
            = mode == AppearanceMode::dark ? QStringLiteral("dark") : QStringLiteral("light");
        QVERIFY(screens::save(
            image, QStringLiteral("settings-calibration-corrected-%1.png").arg(name)));
        // The section alone, from its heading to its buttons.
        auto* page = s.settings->property("calibrationPage").value<QObject*>();
        auto* section = qobject_cast<QQuickItem*>(page->property("correction").value<QObject*>());
        QVERIFY(section);
        const QRect around = sceneRect(section).adjusted(-12, -8, 12, 8).intersected(image.rect());
        QVERIFY(screens::save(
            image.copy(around), QStringLiteral("microphone-correction-%1.png").arg(name)));
    }
};

QTEST_MAIN(CorrectionViewTest)
#include "CorrectionViewTest.moc"
