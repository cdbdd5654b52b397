#pragma once

// Dates of spectra that arrive ten times a second; whole milliseconds keep them exact.
#include <chrono>

#include "common/Date.h"

namespace ostrel::testsupport {

inline const Date tickBase = addingSeconds(Date {}, 1'700'000'000.0);

inline Date tick(int index)
{
    return tickBase + std::chrono::milliseconds(100 * index);
}

} // namespace ostrel::testsupport
