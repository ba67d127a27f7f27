#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>

#include "linux/reader/calendar_item.h"
#include "linux/reader/rule_expansion.h"
#include "linux/reader/time_reading.h"

namespace orvane::ical {

// The places of a recurring item, before anything moves: the start, what its rules and RDATE add,
// without what EXDATE and EXRULE take away. A place is known by its key, which does not depend on
// the zone in which it is written: the instant, or the day of an all-day item.
class Series {
 public:
  using Key = std::int64_t;
  // Answers false to hear of no more of the same rule.
  using Visit = std::function<bool(const AddedTime& place, Key key)>;

  // Of an item with a start, which must live as long as this.
  Series(const CalendarItem& item, const TimeReading& times);

  [[nodiscard]] Key keyOf(const ItemTime& place) const;
  // The key of the place that a RECURRENCE-ID or EXDATE means. A date beside times means whatever
  // there is on that day; then the answer is nothing, and the day counts.
  [[nodiscard]] std::optional<Key> keyMeantBy(const ItemTime& time) const;
  [[nodiscard]] WallTime dayOfPlace(const ItemTime& place) const;
  // What tells the occurrence at a place from others of the item.
  [[nodiscard]] std::string identifierOf(Key key) const;

  // The places in the range, on the clock of the start: those of each rule ascending, then those
  // of RDATE. A place may come more than once.
  void visitPlaces(ExpansionRange range, StepBudget& budget, const Visit& visit) const;

 private:
  [[nodiscard]] ItemTime placeAt(WallTime time) const;
  [[nodiscard]] bool isMidnightForDay(WallTime time) const;
  [[nodiscard]] bool isExcluded(const ItemTime& place, Key key) const;
  void expand(const RecurrenceRule& rule, ExpansionRange range, StepBudget& budget,
              const VisitTime& visit) const;

  WallTime findTakenByRules(ExpansionRange range, StepBudget& budget,
                            std::unordered_set<Key>& taken) const;

  const CalendarItem& item_;
  const TimeReading& times_;
  std::set<Key> excludedKeys_;
  std::set<WallTime> excludedDays_;
};

}  // namespace orvane::ical
