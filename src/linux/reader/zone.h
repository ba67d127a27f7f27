#pragma once

#include <cstdint>
#include <vector>

#include "linux/reader/wall_time.h"

namespace orvane::ical {

// How far clocks in one place were and will be ahead of UTC: a table of changes. Beyond the last
// change its offset holds on.
class Zone {
 public:
  struct Change {
    Instant at = 0;
    std::int64_t offset = 0;  // seconds east of UTC, from then on
    friend bool operator==(const Change&, const Change&) = default;
  };

  // What a time means that clocks jump over in spring.
  enum class InGap {
    movedOn,    // as long after the jump as it would have been without it: 02:30 is 03:30
    firstAfter  // the first instant behind the jump; a day starts there when it has no midnight
  };

  // A place whose clocks never change.
  explicit Zone(std::int64_t offset = 0) : Zone(offset, {}) {}
  // The changes may come in any order.
  Zone(std::int64_t offsetBefore, std::vector<Change> changes);

  [[nodiscard]] std::int64_t offsetAt(Instant instant) const;
  [[nodiscard]] WallTime wallTime(Instant instant) const { return instant + offsetAt(instant); }
  // Of a time that comes twice in autumn, the first.
  [[nodiscard]] Instant instantOf(WallTime time, InGap inGap = InGap::movedOn) const;
  [[nodiscard]] Instant startOfDay(std::int64_t day) const {
    return instantOf(day * kSecondsPerDay, InGap::firstAfter);
  }

 private:
  // The first holds since ever.
  std::vector<Change> stretches_;
};

}  // namespace orvane::ical
