#include "station/CalibrationRun.h"

#include <algorithm>
#include <memory>

namespace ostrel {

CalibrationRun::CalibrationRun(const MeasurementSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings)
{
    // A monotonic clock: a wall-clock step mid-measurement must not shorten or stretch it.
    auto monotonic = std::make_shared<QElapsedTimer>();
    monotonic->start();
    clock_ = [monotonic] { return static_cast<double>(monotonic->nsecsElapsed()) / 1e9; };
    timer_.setSingleShot(false);
    connect(&timer_, &QTimer::timeout, this, &CalibrationRun::tick);
}

void CalibrationRun::measure(double duration, Progress progress, Completion completion)
{
    if (collector_) cancel();
    collector_.emplace();
    started_ = clock_();
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
    const double elapsed = clock_() - started_;
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
