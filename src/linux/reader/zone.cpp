#include "linux/reader/zone.h"

#include <algorithm>
#include <limits>

namespace orvane::ical {

namespace {

constexpr Instant kSinceEver = std::numeric_limits<Instant>::min() / 2;
constexpr Instant kForEver = std::numeric_limits<Instant>::max() / 2;
// No place is further from UTC than this, so a wall time lies at most so far from its instant.
constexpr std::int64_t kFarthestOffset = 26 * 3600;

bool startsLater(Instant instant, const Zone::Change& change) { return instant < change.at; }

}  // namespace

Zone::Zone(std::int64_t offsetBefore, std::vector<Change> changes)
    : stretches_{{kSinceEver, offsetBefore}} {
  std::stable_sort(changes.begin(), changes.end(),
                   [](const Change& a, const Change& b) { return a.at < b.at; });
  for (const Change& change : changes) {
    if (change.at == stretches_.back().at) stretches_.pop_back();
    if (stretches_.empty() || change.offset != stretches_.back().offset) {
      stretches_.push_back(change);
    }
  }
}

std::int64_t Zone::offsetAt(Instant instant) const {
  const auto later = std::upper_bound(stretches_.begin(), stretches_.end(), instant, startsLater);
  return later == stretches_.begin() ? stretches_.front().offset : std::prev(later)->offset;
}

Instant Zone::instantOf(WallTime time, InGap inGap) const {
  auto stretch =
      std::upper_bound(stretches_.begin(), stretches_.end(), time - kFarthestOffset, startsLater);
  if (stretch != stretches_.begin()) --stretch;
  for (; stretch != stretches_.end(); ++stretch) {
    const auto next = std::next(stretch);
    const Instant end = next == stretches_.end() ? kForEver : next->at;
    const Instant instant = time - stretch->offset;
    if (instant < end && instant >= stretch->at) return instant;
    const bool isInGap =
        next != stretches_.end() && instant >= end && time - next->offset < next->at;
    if (isInGap) return inGap == InGap::movedOn ? instant : end;
  }
  return time - stretches_.back().offset;
}

}  // namespace orvane::ical
