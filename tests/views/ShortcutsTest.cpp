// Every command of the main window by its shortcut, on the window drawn off screen: the show's
// commands with their enabled rules, the meter's reset, the brightness, and the windows.
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "app/SilentCaptureBackend.h"
#include "station/AppModel.h"
#include "support/SteadyInterval.h"
#include "views/components/Symbols.h"

#include "StationQmlModules.h"

using namespace ostrel;

class ShortcutsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow* window = nullptr;

    QWindow* windowNamed(const char* name) const
    {
        auto* found = window->findChild<QObject*>(QLatin1String(name));
        return qobject_cast<QWindow*>(found);
    }

    void press(const char* sequence)
    {
        QTest::keySequence(window, QKeySequence(QString::fromLatin1(sequence)));
        QCoreApplication::processEvents();
    }

private slots:
    void initTestCase()
    {
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        Symbols::installFont();
    }

    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        store = std::make_unique<QSettings>(folder->filePath("s.ini"), QSettings::IniFormat);
        model = std::make_unique<AppModel>(AppModel::Mode::inert,
            std::make_unique<AppSettings>(*store), std::make_unique<SilentCaptureBackend>());
        model->start();
        engine = std::make_unique<QQmlApplicationEngine>();
        engine->addImportPath(QStringLiteral("qrc:/"));
        engine->setInitialProperties(
            {{QStringLiteral("appModel"), QVariant::fromValue(model.get())}});
        engine->load(QUrl(QStringLiteral("qrc:/Ostrel/Main/ContentView.qml")));
        QVERIFY(!engine->rootObjects().isEmpty());
        window = qobject_cast<QQuickWindow*>(engine->rootObjects().first());
        QVERIFY(window);
        window->resize(800, 700);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window));
    }

    void cleanup()
    {
        window = nullptr;
        engine.reset();
        model.reset();
        store.reset();
        folder.reset();
    }

    void newAndEndSessionFollowTheirEnabledRules()
    {
        press("Ctrl+N");
        QTRY_VERIFY(model->isPresentingNewSession());
        model->setPresentingNewSession(false);
        model->startSession(QStringLiteral("Matinee"));
        QVERIFY(model->hasActiveSession());
        // With a session running a new one can't be asked for.
        press("Ctrl+N");
        QTest::qWait(50);
        QVERIFY(!model->isPresentingNewSession());
        press("Ctrl+Alt+N");
        QTRY_VERIFY(!model->hasActiveSession());
        QVERIFY(model->presentedSummary());
    }

    void resetPeakAndLeqClearsTheMeter()
    {
        for (int i = 1; i <= 10; ++i)
            model->ingest(
                testsupport::steadyInterval(85.0), addingSeconds(model->currentDate(), 0.1 * i));
        QVERIFY(model->meter().statistics().leq().has_value());
        press("Ctrl+K");
        QTRY_VERIFY(!model->meter().statistics().leq().has_value());
    }

    void brighterAndDimmerStepTheScreenWithinItsBounds()
    {
        model->settings().display().setScreenBrightness(0.5);
        press("Ctrl+Alt+Up");
        QTRY_COMPARE(model->settings().display().screenBrightness(), 0.6);
        press("Ctrl+Alt+Down");
        press("Ctrl+Alt+Down");
        QTRY_VERIFY(std::fabs(model->settings().display().screenBrightness() - 0.4) < 1e-9);
    }

    void theWindowsOpenByTheirShortcuts_data()
    {
        QTest::addColumn<QString>("sequence");
        QTest::addColumn<QString>("name");
        QTest::newRow("cue history") << "Ctrl+Y"
                                     << "cueHistoryWindow";
        QTest::newRow("recordings") << "Ctrl+O"
                                    << "recordingsWindow";
        QTest::newRow("recordings window") << "Ctrl+Shift+R"
                                           << "recordingsWindow";
        QTest::newRow("settings") << "Ctrl+,"
                                  << "settingsWindow";
        QTest::newRow("help") << "Ctrl+?"
                              << "helpWindow";
        QTest::newRow("help key") << "F1"
                                  << "helpWindow";
    }

    void theWindowsOpenByTheirShortcuts()
    {
        QFETCH(QString, sequence);
        QFETCH(QString, name);
        QWindow* opened = windowNamed(qPrintable(name));
        QVERIFY(opened);
        QVERIFY(!opened->isVisible());
        press(qPrintable(sequence));
        QTRY_VERIFY(opened->isVisible());
    }

    void exportAsksForAFileOnlyOnceThereIsASession()
    {
        auto* dialog = window->findChild<QObject*>(QStringLiteral("exportDialog"));
        QVERIFY(dialog);
        press("Ctrl+E");
        QTest::qWait(50);
        QVERIFY(!dialog->property("visible").toBool());
        model->startSession(QStringLiteral("Evening"));
        press("Ctrl+E");
        QTRY_VERIFY(dialog->property("visible").toBool());
        QMetaObject::invokeMethod(dialog, "close");
    }
};

QTEST_MAIN(ShortcutsTest)
#include "ShortcutsTest.moc"
