#include "app/FillScreenOnLaunch.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

namespace ostrel {

FillScreenOnLaunch::FillScreenOnLaunch(QWindow& window) : QObject(&window), window_(&window)
{
    connect(&window, &QWindow::visibleChanged, this, &FillScreenOnLaunch::windowBecameVisible);
    if (window.isVisible()) windowBecameVisible(true);
}

void FillScreenOnLaunch::windowBecameVisible(bool visible)
{
    if (!visible || didFillScreen_) return;
    didFillScreen_ = true;
    // Next turn, once the window is on screen and knows which screen it is on.
    QTimer::singleShot(0, this, &FillScreenOnLaunch::fill);
}

void FillScreenOnLaunch::fill()
{
    if (!window_) return;
    // Not full screen: the operator's other windows stay reachable.
    if (window_->windowStates() & Qt::WindowFullScreen)
        window_->setWindowStates(window_->windowStates() & ~Qt::WindowFullScreen);
    QScreen* screen = window_->screen() ? window_->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    // The frame, where a window manager draws one, goes inside the usable area too.
    window_->setGeometry(screen->availableGeometry().marginsRemoved(window_->frameMargins()));
}

} // namespace ostrel
