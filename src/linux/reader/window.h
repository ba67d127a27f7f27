#pragma once

#include <cstddef>

#include "linux/reader/wall_time.h"

namespace orvane::ical {

// The stretch of time that is asked for, [start, end).
struct Window {
  Instant start = 0;
  Instant end = 0;

  // What takes no time overlaps the window when it starts within it.
  [[nodiscard]] bool overlaps(Instant from, Instant to) const {
    return from < end && (to > start || (from == to && from >= start));
  }
};

// At most so many occurrences of one item are shown: one a minute for a week.
inline constexpr std::size_t kMostOccurrences = 10'080;

}  // namespace orvane::ical
