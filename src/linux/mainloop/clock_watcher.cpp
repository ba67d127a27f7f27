#include "linux/mainloop/clock_watcher.h"

#include <algorithm>
#include <utility>

#include "linux/mainloop/clocks.h"
#include "linux/mainloop/zone_files.h"

namespace orvane::host {
namespace {

Duration kernelSuspendedTime() { return bootTime() - awakeTime(); }

// The two clocks behind the suspended time are read one after the other, so it wavers a little.
constexpr Duration kSlept = std::chrono::milliseconds(500);
// Whatever the calendar answers, the next look is neither at once nor days away.
constexpr TimeInterval kSoonest = 1;
constexpr TimeInterval kLatest = 50.0 * 3600;

Date dateAt(WallTimer::Time time) { return {std::chrono::duration<double>(time).count()}; }

class TimerClockWatcher final : public ClockWatcher {
 public:
  TimerClockWatcher(MainActor& actor, ClockWatcherOptions options,
                    std::function<void(ClockChange)> changed)
      : options_(std::move(options)),
        changed_(std::move(changed)),
        zoneFiles_(makeZoneFiles(actor, options_.localtime, [this] { zoneChanged(); })) {
    if (!options_.suspendedTime) options_.suspendedTime = kernelSuspendedTime;
    suspended_ = options_.suspendedTime();
    arm();
  }
  ~TimerClockWatcher() override { options_.timer->disarm(); }

 private:
  void arm() {
    const Date now = dateAt(options_.timer->now());
    const Date next = std::clamp(options_.startOfNextDay(now), now + kSoonest, now + kLatest);
    // Whole microseconds, rounded up: a double holds them exactly for today's dates, and a timer
    // that is early by a rounding error would still find the old day.
    const auto at = std::chrono::ceil<std::chrono::microseconds>(
        std::chrono::duration<double>(next.secondsSince1970));
    options_.timer->arm(at, [this](WallTimerEvent event) { wake(event); });
  }

  void wake(WallTimerEvent event) {
    changed_(event == WallTimerEvent::reached ? ClockChange::dayTurned : whatJumped());
    arm();
  }

  void zoneChanged() {
    changed_(ClockChange::zone);
    arm();
  }

  ClockChange whatJumped() {
    const auto before = std::exchange(suspended_, options_.suspendedTime());
    return suspended_ - before > kSlept ? ClockChange::resumed : ClockChange::clockSet;
  }

  ClockWatcherOptions options_;
  const std::function<void(ClockChange)> changed_;
  Duration suspended_{};
  std::unique_ptr<ZoneFiles> zoneFiles_;
};

}  // namespace

std::unique_ptr<ClockWatcher> makeClockWatcher(MainActor& actor, ClockWatcherOptions options,
                                               std::function<void(ClockChange)> changed) {
  return std::make_unique<TimerClockWatcher>(actor, std::move(options), std::move(changed));
}

}  // namespace orvane::host
