// The shell's own dialogs drawn off screen: an update check's outcome against a feed served on
// loopback, and the about panel with the build's version.
#include <QDir>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "FakeUpdateServer.h"
#include "app/SilentCaptureBackend.h"
#include "station/AppModel.h"
#include "station/AppUpdater.h"
#include "views/components/Theme.h"

#include "StationQmlModules.h"

using namespace ostrel;

namespace {

// A window holding one dialog of the Main module, opened with `properties`.
const QByteArray host = R"(
import QtQuick
import QtQuick.Controls
import Ostrel.Components
import Ostrel.Main

ApplicationWindow {
    required property var dialogProperties
    required property string dialogName
    property QtObject dialog: null
    width: 560
    height: 420
    visible: true
    color: Theme.background
    Component.onCompleted: {
        const component = Qt.createComponent("qrc:/Ostrel/Main/" + dialogName + ".qml")
        dialog = component.createObject(contentItem, dialogProperties)
    }
}
)";

QImage grab(QQuickWindow* window)
{
    QSignalSpy frames(window, &QQuickWindow::frameSwapped);
    window->requestUpdate();
    frames.wait(2000);
    QTest::qWait(300); // the dialog's enter transition
    return window->grabWindow();
}

void save(const QImage& image, const QString& name)
{
    QDir().mkpath(QStringLiteral(OSTREL_SCREENSHOT_DIR));
    image.save(QStringLiteral(OSTREL_SCREENSHOT_DIR "/") + name);
}

// A station's updater of version 0.1.0 over a feed on loopback offering `newest`.
struct UpdaterOverFeed {
    testsupport::FakeUpdateServer server;
    QTemporaryDir folder;
    QSettings settings {folder.filePath("s.ini"), QSettings::IniFormat};
    SettingsStore store {settings};
    UpdateSettings updates {store};
    AppUpdater updater;

    explicit UpdaterOverFeed(const QString& newest)
        : updater(true, updates, server.feedUrl().toString(), QStringLiteral("0.1.0"))
    {
        server.answer(200, testsupport::appcast({newest}));
    }
};

} // namespace

class ShellDialogsTest : public QObject {
    Q_OBJECT

    QQmlApplicationEngine engine;

    QQuickWindow* open(const QString& name, const QVariantMap& properties)
    {
        QQmlComponent component(&engine);
        component.setData(host, QUrl(QStringLiteral("qrc:/tests/Host.qml")));
        auto* object = component.createWithInitialProperties(
            {{"dialogName", name}, {"dialogProperties", properties}});
        if (!object) qWarning() << component.errors();
        return qobject_cast<QQuickWindow*>(object);
    }

private slots:
    void initTestCase()
    {
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
        engine.addImportPath(QStringLiteral("qrc:/"));
    }

    void aNewerReleaseIsOfferedWithItsDownloadPage()
    {
        UpdaterOverFeed feed("0.2.0");
        AppUpdater& updater = feed.updater;
        std::unique_ptr<QQuickWindow> window(
            open("UpdateDialog", {{"updater", QVariant::fromValue(&updater)}}));
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        auto* dialog = window->property("dialog").value<QObject*>();
        QVERIFY(dialog);
        QVERIFY(!dialog->property("visible").toBool());
        updater.checkForUpdates();
        QTRY_VERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("title").toString(),
            QString("A new version of Ostrel Live is available"));
        auto* download = window->findChild<QQuickItem*>(QStringLiteral("downloadButton"));
        QVERIFY(download && download->isVisible());
        auto* later = window->findChild<QQuickItem*>(QStringLiteral("laterButton"));
        QVERIFY(later);
        QCOMPARE(later->property("text").toString(), QString("Later"));
        save(grab(window.get()), QStringLiteral("update-available-560x420.png"));
        // Later closes it and the check may run again.
        QMetaObject::invokeMethod(dialog, "reject");
        QTRY_VERIFY(!updater.isPresenting());
        QVERIFY(updater.canCheckForUpdates());
    }

    void upToDateSaysSoWithOneButton()
    {
        UpdaterOverFeed feed("0.1.0");
        AppUpdater& updater = feed.updater;
        std::unique_ptr<QQuickWindow> window(
            open("UpdateDialog", {{"updater", QVariant::fromValue(&updater)}}));
        QVERIFY(window);
        updater.checkForUpdates();
        auto* dialog = window->property("dialog").value<QObject*>();
        QTRY_VERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("title").toString(), QString("You're up to date"));
        auto* download = window->findChild<QQuickItem*>(QStringLiteral("downloadButton"));
        QVERIFY(download && !download->isVisible());
        QCOMPARE(window->findChild<QQuickItem*>(QStringLiteral("laterButton"))
                     ->property("text")
                     .toString(),
            QString("OK"));
    }

    void theAboutPanelShowsTheVersionAndTheCredits()
    {
        QTemporaryDir folder;
        QSettings settings(folder.filePath("s.ini"), QSettings::IniFormat);
        AppModel model(AppModel::Mode::inert, std::make_unique<AppSettings>(settings),
            std::make_unique<SilentCaptureBackend>());
        std::unique_ptr<QQuickWindow> window(
            open("AboutDialog", {{"appModel", QVariant::fromValue(&model)}}));
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        auto* dialog = window->property("dialog").value<QObject*>();
        QVERIFY(dialog);
        QMetaObject::invokeMethod(dialog, "open");
        QTRY_VERIFY(dialog->property("visible").toBool());
        auto* version = window->findChild<QQuickItem*>(QStringLiteral("aboutVersion"));
        QVERIFY(version);
        QCOMPARE(version->property("text").toString(), "Version " + AppUpdater::builtVersion());
        auto* credits = window->findChild<QQuickItem*>(QStringLiteral("aboutCredits"));
        QVERIFY(credits && !credits->property("text").toString().isEmpty());
        save(grab(window.get()), QStringLiteral("about-560x420.png"));
    }
};

QTEST_MAIN(ShellDialogsTest)
#include "ShellDialogsTest.moc"
