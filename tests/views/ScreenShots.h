#pragma once

// What the screen tests share: an inert or live station over scratch preferences, the station's
// QML drawn off screen at a given size, and ways to look at the picture. One renderer for every
// screen test: the window is shown, one frame is waited for and the window is grabbed.
#include <QDir>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <chrono>
#include <cmath>
#include <memory>
#include <set>

#include "FakeCaptureBackend.h"
#include "app/SilentCaptureBackend.h"
#include "station/AppModel.h"

namespace ostrel::screens {

struct Station {
    QTemporaryDir folder;
    std::unique_ptr<QSettings> store;
    std::unique_ptr<AppModel> model;

    explicit Station(AppModel::Mode mode, AppearanceMode appearance,
        std::unique_ptr<AudioCaptureBackend> backend = std::make_unique<SilentCaptureBackend>())
    {
        store = std::make_unique<QSettings>(folder.filePath("settings.ini"), QSettings::IniFormat);
        model = std::make_unique<AppModel>(
            mode, std::make_unique<AppSettings>(*store), std::move(backend));
        model->settings().display().setAppearance(appearance);
        model->settings().measurement().setCalibrationDate(std::chrono::system_clock::now());
    }
};

struct Screen {
    QQuickView view;

    // The main screen, or another root that takes the model and `properties`.
    explicit Screen(AppModel& model,
        const QUrl& source = QUrl(QStringLiteral("qrc:/Ostrel/Main/MainScreen.qml")),
        QVariantMap properties = {})
    {
        view.engine()->addImportPath(QStringLiteral("qrc:/"));
        properties.insert(QStringLiteral("appModel"), QVariant::fromValue(&model));
        view.setInitialProperties(properties);
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.setSource(source);
    }

    QObject* object(const char* name) const
    {
        return view.rootObject() ? view.rootObject()->findChild<QObject*>(QLatin1String(name))
                                 : nullptr;
    }

    QQuickItem* item(const char* name) const
    {
        return view.rootObject() ? view.rootObject()->findChild<QQuickItem*>(QLatin1String(name))
                                 : nullptr;
    }

    // Where the item's top edge lies in the window.
    double sceneY(const char* name) const
    {
        const QQuickItem* found = item(name);
        return found ? found->mapToScene(QPointF(0, 0)).y() : -1.0;
    }

    QRect rectOf(const char* name) const
    {
        const QQuickItem* found = item(name);
        if (!found) return {};
        return found->mapRectToScene(QRectF(0, 0, found->width(), found->height()))
            .toAlignedRect()
            .intersected(QRect(QPoint(0, 0), view.size()));
    }
};

// Draws the screen at `size` and gives the picture once bindings have settled.
inline QImage render(Screen& screen, QSize size)
{
    screen.view.resize(size);
    screen.view.show();
    if (!QTest::qWaitForWindowExposed(&screen.view)) return {};
    QSignalSpy frames(&screen.view, &QQuickWindow::frameSwapped);
    screen.view.update();
    if (!frames.wait(5000)) return {};
    QCoreApplication::processEvents();
    return screen.view.grabWindow();
}

// Pixels in `area` that stand out from the colour at its top left corner.
inline int contrastingPixels(const QImage& image, QRect area)
{
    if (area.isEmpty()) return 0;
    const int background = image.pixelColor(area.topLeft()).lightness();
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (std::abs(image.pixelColor(x, y).lightness() - background) > 100) ++count;
        }
    }
    return count;
}

inline int bluePixels(const QImage& image, QRect area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.blue() > 180 && colour.red() < 90) ++count;
        }
    }
    return count;
}

inline std::size_t distinctColours(const QImage& image)
{
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); y += 2) {
        for (int x = 0; x < image.width(); x += 2)
            colours.insert(image.pixel(x, y));
    }
    return colours.size();
}

inline double meanLightness(const QImage& image)
{
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixelColor(x, y).lightnessF();
    }
    return sum / (image.width() * image.height());
}

inline double brightest(const QImage& image, QRect area)
{
    double most = 0.0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            most = std::max<double>(most, image.pixelColor(x, y).lightnessF());
    }
    return most;
}

// Rows of `area` that hold a pixel standing out from its top left corner: the drawn height.
inline int inkHeight(const QImage& image, QRect area)
{
    if (area.isEmpty()) return 0;
    const int background = image.pixelColor(area.topLeft()).lightness();
    int top = -1;
    int bottom = -1;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (std::abs(image.pixelColor(x, y).lightness() - background) > 100) {
                if (top < 0) top = y;
                bottom = y;
                break;
            }
        }
    }
    return top < 0 ? 0 : bottom - top + 1;
}

inline bool save(const QImage& image, const QString& name)
{
    QDir().mkpath(QStringLiteral(OSTREL_SCREENSHOT_DIR));
    return image.save(QStringLiteral(OSTREL_SCREENSHOT_DIR "/") + name, "PNG");
}

} // namespace ostrel::screens
