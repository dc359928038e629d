// Timing the steps of a benchmark one after the other.
#pragma once

#include <chrono>

// Seconds since `start`, which then moves on to now: the next call times
// the next step.
inline double Lap(std::chrono::steady_clock::time_point& start) {
    const auto now = std::chrono::steady_clock::now();
    const double seconds = std::chrono::duration<double>(now - start).count();
    start = now;
    return seconds;
}
