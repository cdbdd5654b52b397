#include "station/CalibrationRun.h"

#include <algorithm>

namespace ostrel {

CalibrationRun::CalibrationRun(const MeasurementSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings)
{
    timer_.setSingleShot(false);
    connect(&timer_, &QTimer::timeout, this, &CalibrationRun::tick);
}

void CalibrationRun::measure(double duration, Progress progress, Completion completion)
{
    if (collector_) cancel();
    collector_.emplace();
    started_.start();
    duration_ = std::max(duration, 0.0);
    progress_ = std::move(progress);
    completion_ = std::move(completion);
    timer_.start(tickMs_);
}

void CalibrationRun::cancel()
{
    if (collector_) finish();
}

void CalibrationRun::add(const MeasurementInterval& interval)
{
    if (collector_) collector_->add(interval);
}

void CalibrationRun::tick()
{
    // A monotonic clock: a wall-clock step mid-measurement must not shorten or stretch it.
    const double elapsed = static_cast<double>(started_.elapsed()) / 1000.0;
    const double fraction = duration_ > 0.0 ? std::min(elapsed / duration_, 1.0) : 1.0;
    if (progress_) progress_(fraction);
    if (elapsed >= duration_) finish();
}

void CalibrationRun::finish()
{
    timer_.stop();
    std::optional<CalibrationResult> result;
    if (collector_) result = collector_->result(settings_.calibratorReferenceLevel());
    collector_.reset();
    auto completion = std::move(completion_);
    completion_ = nullptr;
    progress_ = nullptr;
    if (completion) completion(result);
}

} // namespace ostrel
