#include "views/dante/DropoutFlashModel.h"

#include <algorithm>

#include "views/dante/FlashPulses.h"

namespace ostrel {

namespace {

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

DropoutFlashModel::DropoutFlashModel(QObject* parent) : ViewModel(parent), clock_(&steadySeconds)
{
    // About a frame at 60 Hz.
    ticker_.setInterval(16);
    connect(&ticker_, &QTimer::timeout, this, &DropoutFlashModel::advance);
}

void DropoutFlashModel::setUrgentFlashCount(qint64 value)
{
    const std::optional<qint64> old = urgentFlashCount_;
    if (old == value) return;
    urgentFlashCount_ = value;
    emit urgentFlashCountChanged();
    // An urgent crew message always flashes, whatever the Dante setting says.
    if (old && value > *old) flash();
}

void DropoutFlashModel::setReducedMotion(bool value)
{
    if (value == reducedMotion_) return;
    reducedMotion_ = value;
    emit reducedMotionChanged();
}

void DropoutFlashModel::flash()
{
    startedAt_ = clock_();
    ++flashCount_;
    emit flashCountChanged();
    ticker_.start();
    advance();
}

void DropoutFlashModel::advance()
{
    const double elapsed = clock_() - startedAt_;
    if (elapsed >= FlashPulses::duration(reducedMotion_)) {
        ticker_.stop();
        setOpacity(0.0);
        return;
    }
    setOpacity(FlashPulses::opacityAt(elapsed, reducedMotion_));
}

void DropoutFlashModel::attach()
{
    watch(dante_);
    watch(settings_);
    // The list the view starts with is not news.
    offline_ = offlineNames();
    if (dante_)
        track(connect(
            dante_, &DanteMonitor::rosterChanged, this, &DropoutFlashModel::offlineChanged));
}

void DropoutFlashModel::refresh() { }

void DropoutFlashModel::offlineChanged()
{
    std::set<QString> now = offlineNames();
    const bool someoneNew = std::any_of(
        now.begin(), now.end(), [this](const QString& name) { return !offline_.contains(name); });
    offline_ = std::move(now);
    if (someoneNew && settings_ && settings_->dropoutFlash()) flash();
}

std::set<QString> DropoutFlashModel::offlineNames() const
{
    std::set<QString> names;
    if (!dante_) return names;
    for (const DanteDevice& device : dante_->devices())
        if (!device.isOnline) names.insert(device.name());
    return names;
}

void DropoutFlashModel::setOpacity(double value)
{
    if (value == opacity_) return;
    opacity_ = value;
    emit opacityChanged();
}

} // namespace ostrel
