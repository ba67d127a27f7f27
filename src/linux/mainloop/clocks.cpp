#include "linux/mainloop/clocks.h"

#include <sys/timerfd.h>

#include <cerrno>
#include <system_error>

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

FileDescriptor openTimer(clockid_t clock) {
  FileDescriptor timer(timerfd_create(clock, TFD_NONBLOCK | TFD_CLOEXEC));
  if (!timer) throw std::system_error(errno, std::generic_category(), "timerfd");
  return timer;
}

timespec toTimespec(std::chrono::nanoseconds time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  timespec result{};
  result.tv_sec = static_cast<time_t>(seconds.count());
  result.tv_nsec = static_cast<long>((time - seconds).count());
  return result;
}

}  // namespace orvane::host
