// Clocks, and what is made of many measurements.
#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

namespace captionfx::peers {

/// Seconds of a clock of the system: CLOCK_THREAD_CPUTIME_ID or CLOCK_MONOTONIC.
[[nodiscard]] inline double SecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Of at least one value.
[[nodiscard]] inline double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

}  // namespace captionfx::peers
