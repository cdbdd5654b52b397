#pragma once

// What a session player is given besides the recording: the meter's graph length, and the
// clock, ticker and background runner that tests replace so they never wait for real time.
#include <chrono>
#include <functional>

#include "common/Date.h"
#include "sessions/SessionOverview.h"

namespace ostrel {

struct SessionPlayerOptions {
    // Runs `build` off the main thread, then `store` with its result on the main thread.
    using BackgroundRunner = std::function<void(
        std::function<SessionOverview()> build, std::function<void(SessionOverview)> store)>;

    double graphDuration = 60.0;
    std::function<Date()> now = [] { return std::chrono::system_clock::now(); };
    double tickSeconds = 0.033; // the clock that drives the views while playing
    // Off for an owner that calls `tick` itself, as the tests do.
    bool runsTicker = true;
    // Empty: the global thread pool.
    BackgroundRunner runInBackground;
};

} // namespace ostrel
