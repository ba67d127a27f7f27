#include "linux/reader/recurrence_rule.h"

#include <libical/ical.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "linux/reader/content_lines.h"

namespace orvane::ical {

namespace {

template <std::size_t Size>
std::vector<int> sortedList(const short (&values)[Size], int lowest, int highest) {
  std::vector<int> list;
  for (const short value : values) {
    if (value == ICAL_RECURRENCE_ARRAY_MAX) break;
    if (value >= lowest && value <= highest && (value != 0 || lowest == 0)) list.push_back(value);
  }
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  return list;
}

std::vector<RecurrenceRule::WeekdayNumber> weekdays(const icalrecurrencetype& rule) {
  std::vector<RecurrenceRule::WeekdayNumber> list;
  for (const short value : rule.by_day) {
    if (value == ICAL_RECURRENCE_ARRAY_MAX) break;
    const int weekday = icalrecurrencetype_day_day_of_week(value);
    if (weekday < ICAL_SUNDAY_WEEKDAY || weekday > ICAL_SATURDAY_WEEKDAY) continue;
    list.push_back({icalrecurrencetype_day_position(value), weekday - ICAL_SUNDAY_WEEKDAY});
  }
  return list;
}

std::optional<RecurrenceRule::Until> untilOf(const icaltimetype& time) {
  if (icaltime_is_null_time(time)) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(time.year),
                                         std::chrono::month(static_cast<unsigned>(time.month)),
                                         std::chrono::day(static_cast<unsigned>(time.day))};
  if (!date.ok()) return std::nullopt;
  RecurrenceRule::Until until;
  until.isDate = time.is_date != 0;
  until.isUtc = icaltime_is_utc(time) != 0;
  until.time = dayNumber(date) * kSecondsPerDay;
  if (!until.isDate) until.time += time.hour * 3600 + time.minute * 60 + time.second;
  return until;
}

std::optional<Frequency> frequencyOf(icalrecurrencetype_frequency frequency) {
  switch (frequency) {
    case ICAL_SECONDLY_RECURRENCE:
      return Frequency::secondly;
    case ICAL_MINUTELY_RECURRENCE:
      return Frequency::minutely;
    case ICAL_HOURLY_RECURRENCE:
      return Frequency::hourly;
    case ICAL_DAILY_RECURRENCE:
      return Frequency::daily;
    case ICAL_WEEKLY_RECURRENCE:
      return Frequency::weekly;
    case ICAL_MONTHLY_RECURRENCE:
      return Frequency::monthly;
    case ICAL_YEARLY_RECURRENCE:
      return Frequency::yearly;
    case ICAL_NO_RECURRENCE:
      break;
  }
  return std::nullopt;
}

// "INTERVAL=2" in its halves, which need not be there.
struct RulePart {
  std::string_view name, value;
};

std::vector<RulePart> partsOf(std::string_view text) {
  std::vector<RulePart> parts;
  while (!text.empty()) {
    const std::string_view part = text.substr(0, text.find(';'));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    const std::size_t equals = std::min(part.find('='), part.size());
    parts.push_back({part.substr(0, equals), part.substr(std::min(equals + 1, part.size()))});
  }
  return parts;
}

std::string_view valueOf(const std::vector<RulePart>& parts, std::string_view name) {
  for (const RulePart& part : parts) {
    if (equalsIgnoringCase(part.name, name)) return part.value;
  }
  return {};
}

std::int64_t numberOf(const std::vector<RulePart>& parts, std::string_view name,
                      std::int64_t absent) {
  const std::string text(valueOf(parts, name));
  return text.empty() ? absent : std::strtoll(text.c_str(), nullptr, 10);
}

// What the library keeps INTERVAL and COUNT in is too small for large ones, and it knows RSCALE and
// SKIP only where it was built so.
bool isReadHere(std::string_view name) {
  return equalsIgnoringCase(name, "INTERVAL") || equalsIgnoringCase(name, "COUNT") ||
         equalsIgnoringCase(name, "RSCALE") || equalsIgnoringCase(name, "SKIP");
}

std::string textForLibrary(const std::vector<RulePart>& parts) {
  std::string text;
  for (const RulePart& part : parts) {
    if (part.name.empty() || isReadHere(part.name)) continue;
    if (!text.empty()) text += ';';
    text.append(part.name).append("=").append(part.value);
  }
  return text;
}

RecurrenceRule::Skip skipOf(const std::vector<RulePart>& parts) {
  const std::string_view value = valueOf(parts, "SKIP");
  if (equalsIgnoringCase(value, "BACKWARD")) return RecurrenceRule::Skip::backward;
  if (equalsIgnoringCase(value, "FORWARD")) return RecurrenceRule::Skip::forward;
  return RecurrenceRule::Skip::omit;
}

RecurrenceRule converted(const icalrecurrencetype& parsed, Frequency frequency) {
  RecurrenceRule rule;
  rule.frequency = frequency;
  rule.until = untilOf(parsed.until);
  if (parsed.week_start != ICAL_NO_WEEKDAY)
    rule.weekStart = parsed.week_start - ICAL_SUNDAY_WEEKDAY;
  rule.bySecond = sortedList(parsed.by_second, 0, 59);
  rule.byMinute = sortedList(parsed.by_minute, 0, 59);
  rule.byHour = sortedList(parsed.by_hour, 0, 23);
  rule.byMonthDay = sortedList(parsed.by_month_day, -31, 31);
  rule.byYearDay = sortedList(parsed.by_year_day, -366, 366);
  rule.byWeekNumber = sortedList(parsed.by_week_no, -53, 53);
  rule.byMonth = sortedList(parsed.by_month, 1, 12);
  rule.bySetPosition = sortedList(parsed.by_set_pos, -366, 366);
  rule.byDay = weekdays(parsed);
  return rule;
}

}  // namespace

std::optional<RecurrenceRule> parseRecurrenceRule(const std::string& text) {
  icalerror_set_errors_are_fatal(0);
  const auto parts = partsOf(text);
  const std::string_view calendar = valueOf(parts, "RSCALE");
  if (!calendar.empty() && !equalsIgnoringCase(calendar, "GREGORIAN")) return std::nullopt;
  // The parsed rule is several kilobytes large and owns a text.
  auto parsed = std::make_unique<icalrecurrencetype>(
      icalrecurrencetype_from_string(textForLibrary(parts).c_str()));
  std::optional<RecurrenceRule> rule;
  if (const auto frequency = frequencyOf(parsed->freq)) {
    rule = converted(*parsed, *frequency);
    const std::int64_t interval = numberOf(parts, "INTERVAL", 1);
    rule->interval = static_cast<int>(std::clamp<std::int64_t>(interval, 1, 1'000'000'000));
    rule->count = std::clamp<std::int64_t>(numberOf(parts, "COUNT", 0), 0, 1'000'000'000'000);
    rule->skip = skipOf(parts);
  }
  icalrecurrencetype_clear(parsed.get());
  return rule;
}

RecurrenceRule ruleOfDates(RecurrenceRule rule) {
  rule.bySecond.clear();
  rule.byMinute.clear();
  rule.byHour.clear();
  if (rule.frequency >= Frequency::daily) return rule;
  const int unitsOfADay = rule.frequency == Frequency::hourly     ? 24
                          : rule.frequency == Frequency::minutely ? 1440
                                                                  : 86'400;
  rule.frequency = Frequency::daily;
  rule.interval = std::max(1, rule.interval / unitsOfADay);
  rule.bySetPosition.clear();
  return rule;
}

}  // namespace orvane::ical
