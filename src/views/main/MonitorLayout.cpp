#include "views/main/MonitorLayout.h"

#include <algorithm>

namespace ostrel {

MonitorLayout::MonitorLayout(QObject* parent) : QObject(parent) { }

double MonitorLayout::scaleFor(double width, double height)
{
    const double fit = std::min(width / referenceWidth, height / referenceHeight);
    return std::clamp(fit, minimumScale, maximumScale);
}

void MonitorLayout::setWidth(double value)
{
    if (value == width_) return;
    width_ = value;
    emit widthChanged();
    updateScale();
}

void MonitorLayout::setHeight(double value)
{
    if (value == height_) return;
    height_ = value;
    emit heightChanged();
    updateScale();
}

double MonitorLayout::cappedScale(double cap) const
{
    return std::min(scale_, cap);
}

void MonitorLayout::updateScale()
{
    const double next = scaleFor(width_, height_);
    if (next == scale_) return;
    scale_ = next;
    emit scaleChanged();
}

} // namespace ostrel
