// The help window drawn off screen, light and dark: its sections in order, text that can be
// selected and copied, and this platform's wording.
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include "views/components/Theme.h"
#include "views/help/HelpSections.h"

#include "ScreenshotStation.h"
#include "StationQmlModules.h"

using namespace ostrel;

namespace {

QList<QQuickItem*> helpTexts(QQuickWindow* window)
{
    QList<QQuickItem*> texts
        = testsupport::itemsNamed(window->contentItem(), QStringLiteral("helpText"));
    std::sort(texts.begin(), texts.end(), [](QQuickItem* a, QQuickItem* b) {
        return a->mapToScene({0, 0}).y() < b->mapToScene({0, 0}).y();
    });
    return texts;
}

} // namespace

class HelpViewsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow* window = nullptr;

    void open(bool dark)
    {
        engine = std::make_unique<QQmlApplicationEngine>();
        engine->addImportPath(QStringLiteral("qrc:/"));
        auto* theme
            = engine->singletonInstance<Theme*>(qmlTypeId("Ostrel.Components", 1, 0, "Theme"));
        if (theme) theme->setDark(dark);
        engine->load(QUrl(QStringLiteral("qrc:/Ostrel/Help/HelpWindow.qml")));
        window = engine->rootObjects().isEmpty()
            ? nullptr
            : qobject_cast<QQuickWindow*>(engine->rootObjects().first());
    }

private slots:
    void initTestCase() { QQuickStyle::setStyle(QStringLiteral("Fusion")); }

    void cleanup()
    {
        window = nullptr;
        engine.reset();
    }

    void theWindowIsTheHelpWithEverySectionInOrder_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    void theWindowIsTheHelpWithEverySectionInOrder()
    {
        QFETCH(bool, dark);
        open(dark);
        QVERIFY(window);
        QCOMPARE(window->title(), QString("Ostrel Live Help"));
        QCOMPARE(window->width(), 560);
        QCOMPARE(window->height(), 640);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QSignalSpy frames(window, &QQuickWindow::frameSwapped);
        window->requestUpdate();
        frames.wait(2000);
        const QImage image = window->grabWindow();
        QDir().mkpath(QStringLiteral(OSTREL_SCREENSHOT_DIR));
        image.save(QStringLiteral(OSTREL_SCREENSHOT_DIR "/help-%1-560x640.png")
                       .arg(dark ? "dark" : "light"));

        const auto texts = helpTexts(window);
        const auto& sections = HelpSections::all();
        QCOMPARE(texts.size(), qsizetype(sections.size()));
        for (qsizetype i = 0; i < texts.size(); ++i)
            QCOMPARE(texts[i]->property("text").toString(),
                QString::fromUtf8(sections[static_cast<std::size_t>(i)].text));
        QCOMPARE(QString::fromUtf8(sections.front().title), QString("Getting Started"));
        QCOMPARE(QString::fromUtf8(sections.back().title), QString("Privacy"));
        // The column is at most 620 wide however wide the window.
        window->resize(1000, 640);
        QTRY_VERIFY(texts.first()->width() <= 620.0);
        QVERIFY(texts.first()->width() > 400.0);
    }

    void theTextCanBeSelectedAndCopied()
    {
        open(false);
        QVERIFY(window);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        const auto texts = helpTexts(window);
        QVERIFY(!texts.isEmpty());
        QQuickItem* first = texts.first();
        QVERIFY(first->property("selectByMouse").toBool());
        QVERIFY(first->property("readOnly").toBool());
        QGuiApplication::clipboard()->clear();
        QMetaObject::invokeMethod(first, "selectAll");
        QMetaObject::invokeMethod(first, "copy");
        QCOMPARE(QGuiApplication::clipboard()->text(), first->property("text").toString());
        // A drag across the words selects them, as a reader would.
        first->setProperty("cursorPosition", 0);
        QMetaObject::invokeMethod(first, "deselect");
        const QPoint from = first->mapToScene({2, 8}).toPoint();
        const QPoint to = first->mapToScene({120, 8}).toPoint();
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, to);
        QTest::mouseRelease(window, Qt::LeftButton, {}, to);
        QVERIFY2(first->property("selectedText").toString().startsWith("Ostrel"),
            qPrintable(first->property("selectedText").toString()));
    }

    void theTextsNameThisComputerAndNotAMac()
    {
        for (const auto& section : HelpSections::all()) {
            const QString text = QString::fromUtf8(section.text);
            QVERIFY2(!text.contains("this Mac"), section.title);
            QVERIFY2(!text.contains("Finder"), section.title);
        }
        QVERIFY(
            QString::fromUtf8(HelpSections::all().front().text)
                .endsWith("Enter the address of the Mac running QLab in Settings \u203a QLab."));
    }
};

QTEST_MAIN(HelpViewsTest)
#include "HelpViewsTest.moc"
