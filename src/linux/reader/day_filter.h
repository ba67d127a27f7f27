#pragma once

#include <cstdint>
#include <vector>

#include "linux/reader/recurrence_rule.h"

namespace orvane::ical {

// Which days a rule means, seen one by one: the parts BYMONTH to BYDAY, and what the start stands
// in for where a rule names no day at all (RFC 5545 section 3.3.10, the table of expanding and
// limiting parts).
class DayFilter {
 public:
  DayFilter(const RecurrenceRule& rule, std::int64_t startDay);

  [[nodiscard]] bool admits(std::int64_t day) const;
  [[nodiscard]] bool admitsEveryDay() const;
  // The day itself, or the first of the next month when nothing in this one can be admitted.
  [[nodiscard]] std::int64_t skippingMonth(std::int64_t day) const;

 private:
  void standInForMissingDays(const RecurrenceRule& rule, std::int64_t startDay);
  [[nodiscard]] bool admitsMonth(std::chrono::month month) const;
  [[nodiscard]] bool admitsWeekday(std::int64_t day, std::chrono::year_month_day date) const;
  [[nodiscard]] bool admitsWeekNumber(std::int64_t day) const;

  enum class PositionsWithin { nothing, month, year };

  std::uint32_t months_ = 0;  // bit per month; 0 admits every
  std::uint32_t monthDays_ = 0, monthDaysFromEnd_ = 0;
  std::vector<int> yearDays_;
  std::vector<int> weekNumbers_;
  std::vector<RecurrenceRule::WeekdayNumber> weekdays_;
  PositionsWithin positionsWithin_ = PositionsWithin::nothing;
  int weekStart_ = 1;
};

}  // namespace orvane::ical
