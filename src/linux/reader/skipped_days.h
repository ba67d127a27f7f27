#pragma once

#include <cstdint>
#include <vector>

#include "linux/reader/recurrence_rule.h"

namespace orvane::ical {

// The days of a yearly or monthly rule that do not exist, such as the 31st of a November, moved as
// SKIP says (RFC 7529 section 4.1).
class SkippedDays {
 public:
  SkippedDays(const RecurrenceRule& rule, std::int64_t startDay);

  [[nodiscard]] bool mayOccur() const { return !monthDays_.empty() || !yearDays_.empty(); }
  // Of the months or the year that begin on `first` and end before `behind`, in any order. A day
  // may have moved to the one before, or to the one behind.
  [[nodiscard]] std::vector<std::int64_t> of(std::int64_t first, std::int64_t behind) const;

 private:
  void addOfStretch(const std::vector<int>& wanted, std::int64_t first, std::int64_t behind,
                    std::vector<std::int64_t>& days) const;
  [[nodiscard]] bool admits(std::int64_t day) const;

  RecurrenceRule::Skip skip_;
  std::vector<int> months_;  // empty admits every
  std::vector<int> monthDays_, yearDays_;
  std::vector<RecurrenceRule::WeekdayNumber> weekdays_;
};

}  // namespace orvane::ical
