#include "linux/reader/within_day_series.h"

#include <algorithm>
#include <vector>

#include "linux/reader/day_filter.h"
#include "linux/reader/day_units.h"

namespace orvane::ical {

namespace {

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

// Goes through the days of a rule, and through no more units and times of each than it must.
class DayWalk {
 public:
  DayWalk(const RecurrenceRule& rule, WallTime start, RuleOutput& output, StepBudget& budget)
      : output_(output),
        budget_(budget),
        unit_(DayUnits::unitOf(rule.frequency)),
        firstUnit_(floorDivide(start, unit_) * unit_),
        times_(timesInUnit(rule, start)),
        days_(rule, dayOf(start)),
        units_(rule, firstUnit_) {}

  void walk() {
    if (times_.empty()) return;
    std::int64_t day = dayOf(firstUnit_);
    if (!output_.isCounted()) day = std::max(day, dayOf(output_.from()));
    for (;; ++day) {
      day = units_.skippingStep(days_.skippingMonth(day));
      if (day * kSecondsPerDay >= output_.end() || !budget_.take()) return;
      if (days_.admits(day) && !walkDay(day)) return;
      if (!skipEqualDays(day)) return;
    }
  }

 private:
  // Counts the days between this one and the range when each has as many times as the other.
  bool skipEqualDays(std::int64_t& day) {
    const std::int64_t days = dayOf(output_.from()) - day - 1;
    if (days <= 0 || !units_.areDaily() || !days_.admitsEveryDay()) return true;
    day += days;
    return output_.skip(days * units_.on(day).size() * std::ssize(times_));
  }

  // Answers whether to go on. The times of the start's own unit may lie before the start, those of
  // all others do not and can be counted without being named.
  bool walkDay(std::int64_t day) {
    const UnitsOfDay units = units_.on(day);
    const WallTime midnight = day * kSecondsPerDay;
    std::int64_t index = units.firstNotBefore(firstUnit_ - midnight);
    if (index < units.size() && midnight + units.at(index) == firstUnit_) {
      if (!walkUnit(firstUnit_)) return false;
      ++index;
    }
    const std::int64_t shown = units.firstNotBefore(output_.from() - midnight - unit_ + 1);
    if (shown > index) {
      if (!output_.skip((shown - index) * std::ssize(times_))) return false;
      index = shown;
    }
    for (; index < units.size(); ++index) {
      if (!walkUnit(midnight + units.at(index))) return false;
    }
    return true;
  }

  bool walkUnit(WallTime begin) {
    return std::all_of(times_.begin(), times_.end(), [&](std::int64_t time) {
      return budget_.take() && output_.accept(begin + time);
    });
  }

  RuleOutput& output_;
  StepBudget& budget_;
  std::int64_t unit_;
  WallTime firstUnit_;
  std::vector<std::int64_t> times_;
  DayFilter days_;
  DayUnits units_;
};

}  // namespace

void expandWithinDays(const RecurrenceRule& rule, WallTime start, RuleOutput& output,
                      StepBudget& budget) {
  if (!budget.take(DayUnits::workFor(rule))) return;
  DayWalk(rule, start, output, budget).walk();
}

}  // namespace orvane::ical
