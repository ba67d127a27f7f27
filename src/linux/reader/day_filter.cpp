#include "linux/reader/day_filter.h"

#include <algorithm>

namespace orvane::ical {

namespace {

bool contains(const std::vector<int>& sorted, int value) {
  return std::binary_search(sorted.begin(), sorted.end(), value);
}

std::uint32_t bit(int position) { return std::uint32_t{1} << position; }

struct Place {
  int fromStart = 0;  // 1 is the first
  int fromEnd = 0;    // -1 is the last
};

Place placeInYear(std::int64_t day, int year) {
  return {static_cast<int>(day - dayNumber(year, 1, 1)) + 1,
          static_cast<int>(day - dayNumber(year + 1, 1, 1))};
}

Place placeInMonth(std::chrono::year_month_day date) {
  const auto last = std::chrono::year_month_day_last(date.year(), date.month() / std::chrono::last);
  const int day = static_cast<int>(static_cast<unsigned>(date.day()));
  return {day, day - static_cast<int>(static_cast<unsigned>(last.day())) - 1};
}

// The start of week 1 of a year: the first week with at least four days in it.
std::int64_t firstWeekOf(int year, int weekStart) {
  const std::int64_t fourth = dayNumber(year, 1, 4);
  return fourth - (weekdayOf(fourth) - weekStart + 7) % 7;
}

}  // namespace

DayFilter::DayFilter(const RecurrenceRule& rule, std::int64_t startDay)
    : yearDays_(rule.byYearDay), weekdays_(rule.byDay), weekStart_(rule.weekStart) {
  for (const int month : rule.byMonth) months_ |= bit(month);
  for (const int day : rule.byMonthDay) {
    if (day > 0) monthDays_ |= bit(day);
    if (day < 0) monthDaysFromEnd_ |= bit(-day);
  }
  if (rule.frequency == Frequency::yearly) {
    weekNumbers_ = rule.byWeekNumber;
    if (months_ != 0) {
      positionsWithin_ = PositionsWithin::month;
    } else if (weekNumbers_.empty()) {
      positionsWithin_ = PositionsWithin::year;
    }
  } else if (rule.frequency == Frequency::monthly) {
    positionsWithin_ = PositionsWithin::month;
  }
  standInForMissingDays(rule, startDay);
}

void DayFilter::standInForMissingDays(const RecurrenceRule& rule, std::int64_t startDay) {
  const bool namesDays = !rule.byMonthDay.empty() || !yearDays_.empty() || !weekdays_.empty();
  if (namesDays || rule.frequency < Frequency::weekly) return;
  const auto start = civilDate(startDay);
  if (rule.frequency == Frequency::weekly || !weekNumbers_.empty()) {
    weekdays_.push_back({0, weekdayOf(startDay)});
    return;
  }
  monthDays_ = bit(static_cast<int>(static_cast<unsigned>(start.day())));
  if (rule.frequency == Frequency::yearly && months_ == 0) {
    months_ = bit(static_cast<int>(static_cast<unsigned>(start.month())));
  }
}

bool DayFilter::admitsMonth(std::chrono::month month) const {
  return months_ == 0 || (months_ & bit(static_cast<int>(static_cast<unsigned>(month)))) != 0;
}

std::int64_t DayFilter::skippingMonth(std::int64_t day) const {
  const auto date = civilDate(day);
  if (admitsMonth(date.month())) return day;
  return dayNumber(date.year() / date.month() / std::chrono::last) + 1;
}

bool DayFilter::admitsEveryDay() const {
  return months_ == 0 && monthDays_ == 0 && monthDaysFromEnd_ == 0 && yearDays_.empty() &&
         weekNumbers_.empty() && weekdays_.empty();
}

bool DayFilter::admits(std::int64_t day) const {
  const auto date = civilDate(day);
  if (!admitsMonth(date.month())) return false;
  if (monthDays_ != 0 || monthDaysFromEnd_ != 0) {
    const Place place = placeInMonth(date);
    if ((monthDays_ & bit(place.fromStart)) == 0 &&
        (monthDaysFromEnd_ & bit(-place.fromEnd)) == 0) {
      return false;
    }
  }
  if (!yearDays_.empty()) {
    const Place place = placeInYear(day, static_cast<int>(date.year()));
    if (!contains(yearDays_, place.fromStart) && !contains(yearDays_, place.fromEnd)) return false;
  }
  if (!weekNumbers_.empty() && !admitsWeekNumber(day)) return false;
  return weekdays_.empty() || admitsWeekday(day, date);
}

bool DayFilter::admitsWeekday(std::int64_t day, std::chrono::year_month_day date) const {
  const int weekday = weekdayOf(day);
  for (const auto& wanted : weekdays_) {
    if (wanted.weekday != weekday) continue;
    if (wanted.position == 0 || positionsWithin_ == PositionsWithin::nothing) return true;
    const Place place = positionsWithin_ == PositionsWithin::month
                            ? placeInMonth(date)
                            : placeInYear(day, static_cast<int>(date.year()));
    const int position =
        wanted.position > 0 ? (place.fromStart - 1) / 7 + 1 : -((-place.fromEnd - 1) / 7 + 1);
    if (position == wanted.position) return true;
  }
  return false;
}

bool DayFilter::admitsWeekNumber(std::int64_t day) const {
  int year = static_cast<int>(civilDate(day).year());
  if (day >= firstWeekOf(year + 1, weekStart_)) ++year;
  if (day < firstWeekOf(year, weekStart_)) --year;
  const std::int64_t first = firstWeekOf(year, weekStart_);
  const int weeks = static_cast<int>(firstWeekOf(year + 1, weekStart_) - first) / 7;
  const int number = static_cast<int>(day - first) / 7 + 1;
  return contains(weekNumbers_, number) || contains(weekNumbers_, number - weeks - 1);
}

}  // namespace orvane::ical
