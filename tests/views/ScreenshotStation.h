#pragma once

// The station's main window drawn off screen for a screenshot test: an inert station in the
// appearance asked for, its window loaded and rendered at a size, the picture saved in the build
// tree, and measures of what was drawn. Include it from one source file of the executable.
#include <QDir>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <memory>

#include "app/SilentCaptureBackend.h"
#include "station/AppModel.h"

namespace ostrel::testsupport {

struct Station {
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<AppModel> model;
    QQmlApplicationEngine engine;
    QQuickWindow* window = nullptr;

    // `crewTimings`: the crew link's waits, shortened by tests that lose a primary.
    explicit Station(AppearanceMode appearance, CrewLink::Timings crewTimings = {})
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        model = std::make_unique<AppModel>(AppModel::Mode::inert,
            std::make_unique<AppSettings>(*store), std::make_unique<SilentCaptureBackend>(),
            QLabClient::Timings {}, QString(), MicMonitor::Timings {}, crewTimings);
        model->settings().display().setAppearance(appearance);
        model->start();
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.setInitialProperties(
            {{QStringLiteral("appModel"), QVariant::fromValue(model.get())}});
        engine.load(QUrl(QStringLiteral("qrc:/Ostrel/Main/ContentView.qml")));
        if (!engine.rootObjects().isEmpty())
            window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    }

    QObject* find(const char* name) const
    {
        return window ? window->findChild<QObject*>(QLatin1String(name)) : nullptr;
    }

    QImage render(QSize size)
    {
        window->resize(size);
        window->show();
        if (!QTest::qWaitForWindowExposed(window)) return {};
        QSignalSpy frames(window, &QQuickWindow::frameSwapped);
        window->requestUpdate();
        frames.wait(2000);
        QTest::qWait(300); // the dialogs' enter transitions
        return window->grabWindow();
    }
};

inline void save(const QImage& image, const QString& name)
{
    QDir().mkpath(QStringLiteral(OSTREL_SCREENSHOT_DIR));
    image.save(QStringLiteral(OSTREL_SCREENSHOT_DIR "/") + name);
}

// Pixels of `area` that differ clearly from its centre's colour: drawn text and lines.
inline int drawnPixels(const QImage& image, QRect area)
{
    const QColor ground = image.pixelColor(area.center());
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (std::abs(image.pixelColor(x, y).lightness() - ground.lightness()) > 80) ++count;
    return count;
}

// Every item under `root` (itself included) by its object name, as drawn: delegates of a
// repeater are found among the items, not always among the QObject children.
inline QList<QQuickItem*> itemsNamed(QQuickItem* root, const QString& name)
{
    QList<QQuickItem*> found;
    if (!root) return found;
    if (root->objectName() == name) found.append(root);
    for (QQuickItem* child : root->childItems())
        found += itemsNamed(child, name);
    return found;
}

// An item's place in the window; a dialog's is that of its content.
inline QRect sceneRect(QObject* object)
{
    auto* item = qobject_cast<QQuickItem*>(object);
    if (!item && object) item = object->property("contentItem").value<QQuickItem*>();
    if (!item) return {};
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height())).toAlignedRect();
}

} // namespace ostrel::testsupport
