#include "linux/reader/skipped_days.h"

#include <algorithm>

namespace orvane::ical {

SkippedDays::SkippedDays(const RecurrenceRule& rule, std::int64_t startDay) : skip_(rule.skip) {
  const bool isOfMonths =
      rule.frequency == Frequency::yearly || rule.frequency == Frequency::monthly;
  if (skip_ == RecurrenceRule::Skip::omit || !isOfMonths || !rule.byWeekNumber.empty()) return;
  months_ = rule.byMonth;
  weekdays_ = rule.byDay;
  monthDays_ = rule.byMonthDay;
  if (!monthDays_.empty()) return;
  yearDays_ = rule.frequency == Frequency::yearly ? rule.byYearDay : std::vector<int>();
  if (!yearDays_.empty() || !weekdays_.empty()) return;
  // A rule that names no day means that of its start.
  const auto start = civilDate(startDay);
  monthDays_ = {static_cast<int>(static_cast<unsigned>(start.day()))};
  if (rule.frequency == Frequency::yearly && months_.empty()) {
    months_ = {static_cast<int>(static_cast<unsigned>(start.month()))};
  }
}

bool SkippedDays::admits(std::int64_t day) const {
  return weekdays_.empty() ||
         std::any_of(weekdays_.begin(), weekdays_.end(), [day](const auto& wanted) {
           return wanted.position == 0 && wanted.weekday == weekdayOf(day);
         });
}

void SkippedDays::addOfStretch(const std::vector<int>& wanted, std::int64_t first,
                               std::int64_t behind, std::vector<std::int64_t>& days) const {
  const bool isForward = skip_ == RecurrenceRule::Skip::forward;
  for (const int number : wanted) {
    if (std::abs(number) <= behind - first) continue;
    const std::int64_t edge = number > 0 ? behind : first;
    const std::int64_t day = isForward ? edge : edge - 1;
    if (admits(day)) days.push_back(day);
  }
}

std::vector<std::int64_t> SkippedDays::of(std::int64_t first, std::int64_t behind) const {
  std::vector<std::int64_t> days;
  if (!yearDays_.empty()) addOfStretch(yearDays_, first, behind, days);
  if (monthDays_.empty()) return days;
  for (std::int64_t month = first; month < behind;) {
    const auto date = civilDate(month);
    const std::int64_t next = dayNumber(date.year() / date.month() / std::chrono::last) + 1;
    const int number = static_cast<int>(static_cast<unsigned>(date.month()));
    const bool isMeant = months_.empty() || std::count(months_.begin(), months_.end(), number) > 0;
    if (isMeant) addOfStretch(monthDays_, month, next, days);
    month = next;
  }
  return days;
}

}  // namespace orvane::ical
