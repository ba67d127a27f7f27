#include "linux/reader/within_day_series.h"

#include <algorithm>
#include <vector>

#include "linux/reader/day_filter.h"

namespace orvane::ical {

namespace {

std::int64_t unitOf(Frequency frequency) {
  if (frequency == Frequency::hourly) return 3600;
  return frequency == Frequency::minutely ? 60 : 1;
}

bool admits(const std::vector<int>& list, std::int64_t value) {
  return list.empty() || std::binary_search(list.begin(), list.end(), static_cast<int>(value));
}

// Which units of time (hours, minutes or seconds, as the rule repeats) a rule means.
class UnitFilter {
 public:
  UnitFilter(const RecurrenceRule& rule, WallTime start) : rule_(rule), days_(rule, dayOf(start)) {}

  // When the unit that begins at `time` is not meant, nothing before the answer is; a unit that is
  // meant is answered with itself.
  WallTime notBefore(WallTime time) {
    if (!admitsDay(dayOf(time))) return (dayOf(time) + 1) * kSecondsPerDay;
    const std::int64_t second = secondOfDay(time);
    if (!admits(rule_.byHour, second / 3600)) return (floorDivide(time, 3600) + 1) * 3600;
    if (rule_.frequency == Frequency::hourly) return time;
    if (!admits(rule_.byMinute, second / 60 % 60)) return (floorDivide(time, 60) + 1) * 60;
    if (rule_.frequency == Frequency::minutely) return time;
    return admits(rule_.bySecond, second % 60) ? time : time + 1;
  }

 private:
  bool admitsDay(std::int64_t day) {
    if (day != knownDay_) {
      knownDay_ = day;
      isAdmitted_ = days_.admits(day);
    }
    return isAdmitted_;
  }

  const RecurrenceRule& rule_;
  DayFilter days_;
  std::int64_t knownDay_ = dayOf(kFirstTime) - 1;
  bool isAdmitted_ = false;
};

// Seconds since the start of a unit, ascending, BYSETPOS applied.
std::vector<std::int64_t> timesInUnit(const RecurrenceRule& rule, WallTime start) {
  std::vector<std::int64_t> times{0};
  if (rule.frequency != Frequency::secondly) {
    const std::vector<int> ownSecond{static_cast<int>(start % 60 + 60) % 60};
    const auto& seconds = rule.bySecond.empty() ? ownSecond : rule.bySecond;
    times.assign(seconds.begin(), seconds.end());
  }
  if (rule.frequency == Frequency::hourly) {
    const std::vector<int> ownMinute{static_cast<int>(secondOfDay(start) / 60 % 60)};
    const auto seconds = times;
    times.clear();
    for (const int minute : rule.byMinute.empty() ? ownMinute : rule.byMinute) {
      for (const std::int64_t second : seconds) times.push_back(minute * 60 + second);
    }
  }
  if (rule.bySetPosition.empty()) return times;
  std::vector<std::int64_t> chosen;
  for (std::int64_t index = 0; index < std::ssize(times); ++index) {
    const auto fromStart = static_cast<int>(index + 1);
    const auto fromEnd = static_cast<int>(index - std::ssize(times));
    const auto& positions = rule.bySetPosition;
    if (std::binary_search(positions.begin(), positions.end(), fromStart) ||
        std::binary_search(positions.begin(), positions.end(), fromEnd)) {
      chosen.push_back(times[static_cast<std::size_t>(index)]);
    }
  }
  return chosen;
}

bool namesNoParts(const RecurrenceRule& rule) {
  return rule.bySecond.empty() && rule.byMinute.empty() && rule.byHour.empty() &&
         rule.byMonthDay.empty() && rule.byYearDay.empty() && rule.byDay.empty() &&
         rule.byMonth.empty() && rule.bySetPosition.empty();
}

// Whether all that lies before the range could be left out; a rule that is counted can only be
// counted at one stroke when nothing is chosen from it.
bool jumpToRange(const RecurrenceRule& rule, std::int64_t step, RuleOutput& output,
                 std::int64_t& index) {
  const std::int64_t reachable = floorDivide(output.from() - output.start(), step);
  if (reachable <= 0) return true;
  if (!output.isCounted()) {
    index = reachable;
    return true;
  }
  if (!namesNoParts(rule)) return true;
  index = reachable;
  return output.skip(reachable - 1);
}

}  // namespace

void expandWithinDays(const RecurrenceRule& rule, WallTime start, RuleOutput& output,
                      StepBudget& budget) {
  const std::int64_t unit = unitOf(rule.frequency);
  const std::int64_t step = unit * rule.interval;
  const WallTime firstUnit = floorDivide(start, unit) * unit;
  const std::vector<std::int64_t> times = timesInUnit(rule, start);
  UnitFilter filter(rule, start);
  std::int64_t index = 0;
  if (times.empty() || !jumpToRange(rule, step, output, index)) return;
  while (budget.take()) {
    const WallTime begin = firstUnit + index * step;
    if (begin >= output.end()) return;
    const WallTime wanted = filter.notBefore(begin);
    if (wanted > begin) {
      index = std::max(index + 1, ceilDivide(wanted - firstUnit, step));
      continue;
    }
    for (const std::int64_t time : times) {
      if (!budget.take() || !output.accept(begin + time)) return;
    }
    ++index;
  }
}

}  // namespace orvane::ical
