#pragma once

#include <chrono>
#include <ctime>

namespace orvane::host {

// Time since boot, suspend included.
[[nodiscard]] std::chrono::nanoseconds bootTime();
// Time since boot without the time spent in suspend.
[[nodiscard]] std::chrono::nanoseconds awakeTime();
// Time since 1970-01-01T00:00:00Z by the wall clock.
[[nodiscard]] std::chrono::nanoseconds wallTime();

[[nodiscard]] timespec toTimespec(std::chrono::nanoseconds time);

}  // namespace orvane::host
