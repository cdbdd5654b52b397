#pragma once

// FFTW's planner (plan creation and destruction) is not thread-safe, while executing a plan is.
// Every place that makes or destroys a plan holds this one lock.
#include <mutex>

namespace ostrel {

std::mutex& fftwPlannerMutex();

} // namespace ostrel
