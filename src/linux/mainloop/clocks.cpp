#include "linux/mainloop/clocks.h"

namespace orvane::host {
namespace {

std::chrono::nanoseconds read(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

std::chrono::nanoseconds bootTime() { return read(CLOCK_BOOTTIME); }
std::chrono::nanoseconds awakeTime() { return read(CLOCK_MONOTONIC); }
std::chrono::nanoseconds wallTime() { return read(CLOCK_REALTIME); }

timespec toTimespec(std::chrono::nanoseconds time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  timespec result{};
  result.tv_sec = static_cast<time_t>(seconds.count());
  result.tv_nsec = static_cast<long>((time - seconds).count());
  return result;
}

}  // namespace orvane::host
