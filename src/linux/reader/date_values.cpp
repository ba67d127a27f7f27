#include "linux/reader/date_values.h"

#include <algorithm>

namespace orvane::ical {

namespace {

std::optional<int> digits(std::string_view text, std::size_t at, std::size_t count) {
  if (text.size() < at + count) return std::nullopt;
  int value = 0;
  for (const char digit : text.substr(at, count)) {
    if (digit < '0' || digit > '9') return std::nullopt;
    value = value * 10 + (digit - '0');
  }
  return value;
}

}  // namespace

std::optional<WallTime> wallTimeOf(int year, int month, int day, int hour, int minute, int second) {
  if (year < 1 || year > 9999 || month < 1 || day < 1) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  const bool isTime =
      hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second <= 60;
  if (!date.ok() || !isTime) return std::nullopt;
  return dayNumber(date) * kSecondsPerDay + hour * 3600 + minute * 60 + std::min(second, 59);
}

std::optional<DateValue> parseDateValue(std::string_view text) {
  const auto year = digits(text, 0, 4), month = digits(text, 4, 2), day = digits(text, 6, 2);
  if (!year || !month || !day) return std::nullopt;
  DateValue value;
  value.isDate = text.size() == 8;
  int hour = 0, minute = 0, second = 0;
  if (!value.isDate) {
    const auto hours = digits(text, 9, 2), minutes = digits(text, 11, 2),
               seconds = digits(text, 13, 2);
    value.isUtc = text.size() == 16 && (text[15] == 'Z' || text[15] == 'z');
    const bool isComplete = text.size() == 15 || value.isUtc;
    if (!hours || !minutes || !seconds || !isComplete) return std::nullopt;
    hour = *hours;
    minute = *minutes;
    second = *seconds;
  }
  const auto time = wallTimeOf(*year, *month, *day, hour, minute, second);
  if (!time) return std::nullopt;
  value.time = *time;
  return value;
}

std::optional<std::int64_t> parseOffset(std::string_view text) {
  const bool isNegative = !text.empty() && text.front() == '-';
  if (!text.empty() && (isNegative || text.front() == '+')) text.remove_prefix(1);
  const auto hours = digits(text, 0, 2), minutes = digits(text, 2, 2);
  const auto seconds = text.size() > 4 ? digits(text, 4, 2) : 0;
  if (!hours || !minutes || !seconds || *hours > 24) return std::nullopt;
  const std::int64_t offset = *hours * 3600 + *minutes * 60 + *seconds;
  return isNegative ? -offset : offset;
}

}  // namespace orvane::ical
