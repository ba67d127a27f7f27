#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "foundation/main_actor.h"
#include "linux/mainloop/wall_timer.h"

namespace orvane::host {

enum class ClockChange {
  clockSet,   // the wall clock jumped
  resumed,    // the machine slept and woke
  zone,       // the system's time zone may be another, or have other rules
  dayTurned,  // the local day is another than at the last announcement
};

struct ClockWatcherOptions {
  // The first instant of the local day after the one that holds the given instant, in the zone as
  // it is when asked. Must be later than that instant.
  std::function<Date(Date)> startOfNextDay;
  std::filesystem::path localtime = "/etc/localtime";
  std::unique_ptr<WallTimer> timer = makeWallTimer();
  // How long the machine has been suspended since boot; only differences count.
  std::function<Duration()> suspendedTime;  // the kernel's own when left empty
};

// Announces that what "now" or "today" mean has changed. After each announcement it asks again
// when the local day turns, so whoever keeps a zone must have let go of it by then. Wakes the
// machine only when there is something to announce. Main thread only; ends with its destruction,
// which must not happen inside `changed`.
class ClockWatcher {
 public:
  virtual ~ClockWatcher() = default;
};
[[nodiscard]] std::unique_ptr<ClockWatcher> makeClockWatcher(
    MainActor& actor, ClockWatcherOptions options, std::function<void(ClockChange)> changed);

}  // namespace orvane::host
