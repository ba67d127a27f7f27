#include "linux/reader/posix_zone_rule.h"

#include <cctype>

namespace orvane::ical {

namespace {

// Takes the parts of a rule off its front; each answers whether it was there.
class RuleText {
 public:
  explicit RuleText(std::string_view text) : rest_(text) {}

  [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

  bool take(char wanted) {
    if (rest_.empty() || rest_.front() != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }

  // "CET" or "<+03>".
  bool takeName() {
    if (take('<')) {
      const std::size_t end = rest_.find('>');
      if (end == std::string_view::npos) return false;
      rest_.remove_prefix(end + 1);
      return true;
    }
    std::size_t size = 0;
    while (size < rest_.size() && std::isalpha(static_cast<unsigned char>(rest_[size]))) ++size;
    rest_.remove_prefix(size);
    return size >= 3;
  }

  std::optional<int> takeNumber() {
    int value = 0;
    int digits = 0;
    while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9' && digits < 4) {
      value = value * 10 + (rest_.front() - '0');
      rest_.remove_prefix(1);
      ++digits;
    }
    if (digits == 0) return std::nullopt;
    return value;
  }

  // "[+-]hh[:mm[:ss]]" in seconds.
  std::optional<std::int64_t> takeTime() {
    const bool isNegative = take('-');
    if (!isNegative) take('+');
    const auto hours = takeNumber();
    if (!hours) return std::nullopt;
    std::int64_t seconds = *hours * 3600;
    for (const int unit : {60, 1}) {
      if (!take(':')) break;
      const auto part = takeNumber();
      if (!part) return std::nullopt;
      seconds += *part * unit;
    }
    return isNegative ? -seconds : seconds;
  }

 private:
  std::string_view rest_;
};

struct YearlyMoment {
  enum class Kind { monthWeekday, julian, zeroBased } kind = Kind::monthWeekday;
  int month = 1;
  int week = 1;  // 5 is the last
  int day = 0;   // weekday, or day of the year
  std::int64_t time = 2 * 3600;
};

std::optional<YearlyMoment> takeMoment(RuleText& text) {
  YearlyMoment moment;
  if (text.take('M')) {
    const auto month = text.takeNumber();
    const auto week = text.take('.') ? text.takeNumber() : std::nullopt;
    const auto day = text.take('.') ? text.takeNumber() : std::nullopt;
    if (!month || !week || !day) return std::nullopt;
    if (*month < 1 || *month > 12 || *week < 1 || *week > 5 || *day > 6) return std::nullopt;
    moment.month = *month;
    moment.week = *week;
    moment.day = *day;
  } else {
    moment.kind = text.take('J') ? YearlyMoment::Kind::julian : YearlyMoment::Kind::zeroBased;
    const auto day = text.takeNumber();
    if (!day || *day > 366) return std::nullopt;
    moment.day = *day;
  }
  if (text.take('/')) {
    const auto time = text.takeTime();
    if (!time) return std::nullopt;
    moment.time = *time;
  }
  return moment;
}

std::int64_t dayIn(int year, const YearlyMoment& moment) {
  const std::int64_t newYear = dayNumber(year, 1, 1);
  if (moment.kind == YearlyMoment::Kind::zeroBased) return newYear + moment.day;
  if (moment.kind == YearlyMoment::Kind::julian) {
    // Day 60 is always the first of March.
    const bool isBehindLeapDay = std::chrono::year(year).is_leap() && moment.day >= 60;
    return newYear + moment.day - 1 + (isBehindLeapDay ? 1 : 0);
  }
  const auto month = static_cast<unsigned>(moment.month);
  const std::int64_t first = dayNumber(year, month, 1);
  const std::int64_t behind =
      month == 12 ? dayNumber(year + 1, 1, 1) : dayNumber(year, month + 1, 1);
  std::int64_t day = first + (moment.day - weekdayOf(first) + 7) % 7 + 7 * (moment.week - 1);
  while (day >= behind) day -= 7;
  return day;
}

WallTime wallTimeIn(int year, const YearlyMoment& moment) {
  return dayIn(year, moment) * kSecondsPerDay + moment.time;
}

}  // namespace

std::optional<std::vector<Zone::Change>> changesByPosixRule(std::string_view rule, int firstYear,
                                                            int lastYear) {
  RuleText text(rule);
  if (!text.takeName()) return std::nullopt;
  const auto west = text.takeTime();
  if (!west) return std::nullopt;
  const std::int64_t standard = -*west;
  if (text.isEmpty()) return {{{dayNumber(firstYear, 1, 1) * kSecondsPerDay, standard}}};

  if (!text.takeName()) return std::nullopt;
  std::int64_t daylight = standard + 3600;
  if (!text.take(',')) {
    const auto daylightWest = text.takeTime();
    if (!daylightWest || !text.take(',')) return std::nullopt;
    daylight = -*daylightWest;
  }
  const auto toDaylight = takeMoment(text);
  const auto toStandard = text.take(',') ? takeMoment(text) : std::nullopt;
  if (!toDaylight || !toStandard || !text.isEmpty()) return std::nullopt;

  std::vector<Zone::Change> changes;
  for (int year = firstYear; year <= lastYear; ++year) {
    changes.push_back({wallTimeIn(year, *toDaylight) - standard, daylight});
    changes.push_back({wallTimeIn(year, *toStandard) - daylight, standard});
  }
  return changes;
}

}  // namespace orvane::ical
