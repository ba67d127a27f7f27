#pragma once

#include <chrono>
#include <ctime>

#include "linux/files/file_descriptor.h"

namespace orvane::host {

// Time since boot, suspend included.
[[nodiscard]] std::chrono::nanoseconds bootTime();
// Time since boot without the time spent in suspend.
[[nodiscard]] std::chrono::nanoseconds awakeTime();
// Time since 1970-01-01T00:00:00Z by the wall clock.
[[nodiscard]] std::chrono::nanoseconds wallTime();

// A timer of the kernel's on that clock. Throws std::system_error when the kernel gives none.
[[nodiscard]] FileDescriptor openTimer(clockid_t clock);

[[nodiscard]] timespec toTimespec(std::chrono::nanoseconds time);

}  // namespace orvane::host
