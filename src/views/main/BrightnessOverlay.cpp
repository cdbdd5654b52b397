#include "views/main/BrightnessOverlay.h"

#include <QKeySequence>
#include <cmath>

#include "model/DisplaySettings.h"

namespace ostrel {

namespace {

QKeySequence brighterKeys()
{
    return QKeySequence(QKeyCombination(Qt::ControlModifier | Qt::AltModifier, Qt::Key_Up));
}

QKeySequence dimmerKeys()
{
    return QKeySequence(QKeyCombination(Qt::ControlModifier | Qt::AltModifier, Qt::Key_Down));
}

} // namespace

BrightnessOverlay::BrightnessOverlay(QObject* parent) : ViewModel(parent) { }

int BrightnessOverlay::percentOf(double brightness)
{
    return static_cast<int>(std::lround(brightness * 100.0));
}

QString BrightnessOverlay::accessibleValue(double brightness)
{
    return QStringLiteral("%1 percent").arg(percentOf(brightness));
}

void BrightnessOverlay::setBrightness(double value)
{
    if (display_) display_->setScreenBrightness(value);
}

double BrightnessOverlay::minimum() const
{
    return DisplaySettings::clampedBrightness(0.0);
}

double BrightnessOverlay::maximum() const
{
    return DisplaySettings::clampedBrightness(2.0);
}

QString BrightnessOverlay::helpText() const
{
    return QStringLiteral("Screen brightness (%1 / %2)").arg(brighterShortcut(), dimmerShortcut());
}

QString BrightnessOverlay::brighterShortcut() const
{
    return brighterKeys().toString(QKeySequence::NativeText);
}

QString BrightnessOverlay::dimmerShortcut() const
{
    return dimmerKeys().toString(QKeySequence::NativeText);
}

QString BrightnessOverlay::brighterSequence() const
{
    return brighterKeys().toString(QKeySequence::PortableText);
}

QString BrightnessOverlay::dimmerSequence() const
{
    return dimmerKeys().toString(QKeySequence::PortableText);
}

void BrightnessOverlay::brighter()
{
    if (canBrighten()) setBrightness(brightness_ + step);
}

void BrightnessOverlay::dimmer()
{
    if (canDim()) setBrightness(brightness_ - step);
}

void BrightnessOverlay::attach()
{
    watch(display_);
    if (display_) {
        track(connect(
            display_, &DisplaySettings::screenBrightnessChanged, this, [this] { refresh(); }));
    }
}

void BrightnessOverlay::refresh()
{
    const double next = display_ ? display_->screenBrightness() : 1.0;
    if (next == brightness_) return;
    brightness_ = next;
    emit brightnessChanged();
}

} // namespace ostrel
