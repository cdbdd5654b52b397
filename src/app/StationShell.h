#pragma once

// The frame of the process around the one AppModel: loads the main window, shows it, and for
// screenshots renders it with sample readings into a PNG file.
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSize>
#include <QString>

#include "station/AppModel.h"

Q_DECLARE_LOGGING_CATEGORY(ostrelUi)

namespace ostrel {

class StationShell {
public:
    explicit StationShell(AppModel& model);

    // Without a GPU, Mesa draws OpenGL on the processor and repaints the whole window for every
    // reading; Qt Quick's own software renderer repaints only what changed, which costs far less
    // there. An explicit QT_QUICK_BACKEND wins. Before the first window only.
    static void chooseRenderer();

    // The main window, or null when its QML could not be loaded.
    QQuickWindow* load();
    // Fills the usable screen once at launch, except for an inert model, which keeps its
    // default size.
    void show();
    // Logs the time from `launch` until the first level is drawn.
    void reportFirstReading(const QElapsedTimer& launch);
    // Shows the window at `size`, waits for it to be drawn, saves it and quits with 0, or 2 when
    // the file can't be written.
    void renderToFile(const QString& path, QSize size);

private:
    AppModel& model_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
};

} // namespace ostrel
