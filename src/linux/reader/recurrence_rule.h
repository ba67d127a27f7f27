#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/reader/wall_time.h"

namespace orvane::ical {

enum class Frequency { secondly, minutely, hourly, daily, weekly, monthly, yearly };

// One RRULE (RFC 5545 section 3.3.10). Lists are sorted and empty when their part is absent.
struct RecurrenceRule {
  struct WeekdayNumber {
    int position = 0;  // 2 the second, -1 the last, 0 every
    int weekday = 0;   // 0 is Sunday
  };
  // The end as it was written, to be understood together with the kind of the start.
  struct Until {
    WallTime time = 0;
    bool isDate = false;
    bool isUtc = false;
  };

  // What becomes of a day that does not exist in its month or year (RFC 7529 section 4.1).
  enum class Skip { omit, backward, forward };

  Frequency frequency = Frequency::daily;
  int interval = 1;
  std::int64_t count = 0;  // 0 is without end
  std::optional<Until> until;
  int weekStart = 1;
  Skip skip = Skip::omit;
  std::vector<int> bySecond, byMinute, byHour, byMonthDay, byYearDay, byWeekNumber, byMonth,
      bySetPosition;
  std::vector<WeekdayNumber> byDay;
};

// Nothing when the text is no rule, or one that counts in another calendar than the Gregorian.
std::optional<RecurrenceRule> parseRecurrenceRule(const std::string& text);

// The rule as it holds for an item that starts on a date: what it says about times of day is
// passed over, and what is more often than daily is daily.
RecurrenceRule ruleOfDates(RecurrenceRule rule);

}  // namespace orvane::ical
