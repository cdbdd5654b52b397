#pragma once

// Makes the main window as large as the usable screen once, when it first appears. A request to
// maximise is not enough: kiosks and test harnesses run a bare X server without a window
// manager, where nobody would carry it out. Whatever size was saved, the window opens filling
// the screen; its default size only matters when the operator makes it smaller.
#include <QObject>
#include <QPointer>
#include <QWindow>

namespace ostrel {

class FillScreenOnLaunch : public QObject {
    Q_OBJECT

public:
    // Watches `window` and lives as its child.
    explicit FillScreenOnLaunch(QWindow& window);

    bool didFillScreen() const { return didFillScreen_; }

private:
    void windowBecameVisible(bool visible);
    void fill();

    QPointer<QWindow> window_;
    bool didFillScreen_ = false;
};

} // namespace ostrel
