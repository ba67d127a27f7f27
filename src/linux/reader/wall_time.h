// reader/ is a program of its own: it reads iCalendar files that nobody vouches for and answers
// with plain occurrences. Cutting the text, time zones, recurrence and the rules for events and
// tasks are separate, so that each can be tested without the others.
#pragma once

#include <chrono>
#include <cstdint>

namespace orvane::ical {

// What a clock on the wall shows, counted as if it never changed: seconds since 1970-01-01T00:00
// of an unnamed place. An instant is counted likewise, in UTC. Both stay within the years 1…9999.
using WallTime = std::int64_t;
using Instant = std::int64_t;

inline constexpr std::int64_t kSecondsPerDay = 86400;
inline constexpr WallTime kFirstTime = -62135596800;       // 0001-01-01T00:00:00
inline constexpr WallTime kBehindLastTime = 253402300800;  // 10000-01-01T00:00:00

constexpr std::int64_t floorDivide(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t quotient = dividend / divisor;
  return quotient - (dividend % divisor < 0 ? 1 : 0);
}

constexpr std::int64_t ceilDivide(std::int64_t dividend, std::int64_t divisor) {
  return floorDivide(dividend + divisor - 1, divisor);
}

// Days since 1970-01-01.
constexpr std::int64_t dayOf(WallTime time) { return floorDivide(time, kSecondsPerDay); }
constexpr std::int64_t secondOfDay(WallTime time) { return time - dayOf(time) * kSecondsPerDay; }
constexpr WallTime startOfDay(WallTime time) { return dayOf(time) * kSecondsPerDay; }

constexpr std::chrono::year_month_day civilDate(std::int64_t day) {
  return std::chrono::sys_days(std::chrono::days(static_cast<int>(day)));
}

constexpr std::int64_t dayNumber(std::chrono::year_month_day date) {
  return std::chrono::sys_days(date).time_since_epoch().count();
}

constexpr std::int64_t dayNumber(int year, unsigned month, unsigned day) {
  return dayNumber(std::chrono::year_month_day(std::chrono::year(year), std::chrono::month(month),
                                               std::chrono::day(day)));
}

// 0 is Sunday.
constexpr int weekdayOf(std::int64_t day) {
  return static_cast<int>(day + 4 - 7 * floorDivide(day + 4, 7));
}

}  // namespace orvane::ical
