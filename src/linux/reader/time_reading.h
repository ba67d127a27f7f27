#pragma once

#include <cstdint>
#include <string>

#include "linux/reader/calendar_item.h"
#include "linux/reader/rule_expansion.h"

namespace orvane::ical {

// Makes instants of the times of items, in the place of whoever reads them: dates and floating
// times are that place's. Only refers to the zone.
class TimeReading {
 public:
  explicit TimeReading(const Zone& local) : local_(local) {}

  [[nodiscard]] Instant instantOf(const ItemTime& time) const;
  // `time` with other digits: what its clock shows `days` and then `seconds` later.
  [[nodiscard]] Instant instantAfter(const ItemTime& time, std::int64_t days,
                                     std::int64_t seconds) const;
  // The times on the clock that `of` is read from that may mean an instant in [from, to); a few
  // more where clocks change nearby, or where it is days.
  [[nodiscard]] ExpansionRange timesOn(const ItemTime& of, Instant from, Instant to) const;
  // What the clock that `of` is read from shows at another item's time; of a date, the day.
  [[nodiscard]] WallTime onClockOf(const ItemTime& of, const ItemTime& time) const;
  // The day that is meant where a date should stand. Some writers put a time there: midnight of
  // their own place in UTC, or that of UTC itself.
  [[nodiscard]] WallTime dayMeantBy(const ItemTime& time) const;
  // The last time of a rule as one of the start's kind, inclusive.
  [[nodiscard]] WallTime lastTime(const RecurrenceRule::Until& until, const ItemTime& start) const;

 private:
  [[nodiscard]] const Zone& zoneOf(const ItemTime& time) const;

  const Zone& local_;
  Zone utc_;
};

// "20261120", "20261120T094100" or, of UTC, "20261120T094100Z".
std::string dateText(WallTime day);
std::string floatingText(WallTime time);
std::string utcText(Instant instant);

}  // namespace orvane::ical
