// Clocks.
#pragma once

#include <ctime>

namespace captionfx::peers {

/// Seconds of a clock of the system: CLOCK_THREAD_CPUTIME_ID or CLOCK_MONOTONIC.
[[nodiscard]] inline double SecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace captionfx::peers
