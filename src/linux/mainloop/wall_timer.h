#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace orvane::host {

enum class WallTimerEvent {
  reached,       // the time that was asked for has come
  clockChanged,  // the clock was set, or the machine slept; the timer is no longer armed
};

// A timer for an absolute time on the wall clock that also tells when that clock jumps. One shot.
// Main thread only.
class WallTimer {
 public:
  using Time = std::chrono::nanoseconds;  // since 1970-01-01T00:00:00Z
  using Handler = std::function<void(WallTimerEvent)>;

  virtual ~WallTimer() = default;
  [[nodiscard]] virtual Time now() const = 0;
  // Replaces whatever was armed. A time in the past is reached in the next turn. The handler is
  // never called from within arm().
  virtual void arm(Time at, Handler handler) = 0;
  virtual void disarm() = 0;
};

// On CLOCK_REALTIME and the default main context, before other events of the same turn. Throws
// std::system_error when the kernel gives no timer.
[[nodiscard]] std::unique_ptr<WallTimer> makeWallTimer();

}  // namespace orvane::host
