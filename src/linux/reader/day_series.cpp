#include "linux/reader/day_series.h"

#include <algorithm>
#include <vector>

#include "linux/reader/day_filter.h"
#include "linux/reader/skipped_days.h"

namespace orvane::ical {

namespace {

struct DaySpan {
  std::int64_t first = 0;
  std::int64_t behind = 0;
};

// The periods of a rule, numbered from the one that holds the start.
class Periods {
 public:
  Periods(const RecurrenceRule& rule, std::int64_t startDay)
      : frequency_(rule.frequency), interval_(rule.interval), startDay_(startDay) {
    const auto date = civilDate(startDay);
    year_ = static_cast<int>(date.year());
    month_ = static_cast<std::int64_t>(year_) * 12 + static_cast<unsigned>(date.month()) - 1;
    weekDay_ = startDay - (weekdayOf(startDay) - rule.weekStart + 7) % 7;
  }

  // Nothing beyond the last year that has a number.
  [[nodiscard]] std::optional<DaySpan> at(std::int64_t index) const {
    const std::int64_t steps = index * interval_;
    switch (frequency_) {
      case Frequency::yearly:
        return months((year_ + steps) * 12, 12);
      case Frequency::monthly:
        return months(month_ + steps, 1);
      case Frequency::weekly:
        return days(weekDay_ + 7 * steps, 7);
      default:
        return days(startDay_ + steps, 1);
    }
  }

  // A period that neither begins behind the day nor leaves another one in between out.
  [[nodiscard]] std::int64_t indexNotBehind(std::int64_t day) const {
    const auto date = civilDate(day);
    const std::int64_t year = static_cast<int>(date.year());
    const std::int64_t month = year * 12 + static_cast<unsigned>(date.month()) - 1;
    std::int64_t steps = 0;
    switch (frequency_) {
      case Frequency::yearly:
        steps = year - year_;
        break;
      case Frequency::monthly:
        steps = month - month_;
        break;
      case Frequency::weekly:
        steps = floorDivide(day - weekDay_, 7);
        break;
      default:
        steps = day - startDay_;
        break;
    }
    return std::max<std::int64_t>(0, floorDivide(steps, interval_));
  }

 private:
  static std::optional<DaySpan> months(std::int64_t first, int count) {
    const std::int64_t behind = first + count;
    if (first / 12 > 9999) return std::nullopt;
    return DaySpan{firstOfMonth(first), firstOfMonth(behind)};
  }
  static std::optional<DaySpan> days(std::int64_t first, int count) {
    if (first >= dayOf(kBehindLastTime)) return std::nullopt;
    return DaySpan{first, first + count};
  }
  static std::int64_t firstOfMonth(std::int64_t month) {
    return dayNumber(static_cast<int>(month / 12), static_cast<unsigned>(month % 12) + 1, 1);
  }

  Frequency frequency_;
  std::int64_t interval_;
  std::int64_t startDay_;
  int year_ = 0;
  std::int64_t month_ = 0;    // since year 0
  std::int64_t weekDay_ = 0;  // the first day of the start's week
};

std::vector<int> listOr(const std::vector<int>& list, std::int64_t otherwise) {
  return list.empty() ? std::vector<int>{static_cast<int>(otherwise)} : list;
}

// Seconds since midnight, ascending.
std::vector<int> timesOfDay(const RecurrenceRule& rule, std::int64_t startSecond) {
  std::vector<int> times;
  for (const int hour : listOr(rule.byHour, startSecond / 3600)) {
    for (const int minute : listOr(rule.byMinute, startSecond / 60 % 60)) {
      for (const int second : listOr(rule.bySecond, startSecond % 60)) {
        times.push_back(hour * 3600 + minute * 60 + second);
      }
    }
  }
  return times;
}

// The set of one period before BYSETPOS: every time of day on every day.
struct PeriodSet {
  const std::vector<std::int64_t>& days;
  const std::vector<int>& times;

  [[nodiscard]] std::int64_t size() const { return std::ssize(days) * std::ssize(times); }
  [[nodiscard]] WallTime at(std::int64_t index) const {
    const auto day = days[static_cast<std::size_t>(index / std::ssize(times))];
    return day * kSecondsPerDay + times[static_cast<std::size_t>(index % std::ssize(times))];
  }
};

bool emitPositions(const PeriodSet& set, const std::vector<int>& positions, RuleOutput& output) {
  std::vector<std::int64_t> indices;
  for (const int position : positions) {
    const std::int64_t index = position > 0 ? position - 1 : set.size() + position;
    if (index >= 0 && index < set.size()) indices.push_back(index);
  }
  std::sort(indices.begin(), indices.end());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  return std::all_of(indices.begin(), indices.end(),
                     [&](std::int64_t index) { return output.accept(set.at(index)); });
}

bool emitDay(std::int64_t day, const std::vector<int>& times, RuleOutput& output,
             StepBudget& budget) {
  const WallTime midnight = day * kSecondsPerDay;
  const bool isBeforeRange = midnight + kSecondsPerDay <= output.from();
  if (isBeforeRange && day > dayOf(output.start())) return output.skip(std::ssize(times));
  return std::all_of(times.begin(), times.end(),
                     [&](int time) { return budget.take() && output.accept(midnight + time); });
}

// The days of a rule, period by period.
class DaySeries {
 public:
  DaySeries(const RecurrenceRule& rule, WallTime start, RuleOutput& output, StepBudget& budget)
      : positions_(rule.bySetPosition),
        output_(output),
        budget_(budget),
        filter_(rule, dayOf(start)),
        skipped_(rule, dayOf(start)),
        periods_(rule, dayOf(start)),
        times_(timesOfDay(rule, secondOfDay(start))) {}

  void walk() {
    // A day that has moved may belong to a period beside the one it lies in.
    const std::int64_t margin = skipped_.mayOccur() ? 1 : 0;
    const WallTime from = std::max(output_.from(), output_.start());
    const std::int64_t shown =
        std::max<std::int64_t>(0, periods_.indexNotBehind(dayOf(from)) - margin);
    const bool isEveryDay = filter_.admitsEveryDay() && positions_.empty();
    for (std::int64_t index = output_.isCounted() ? 0 : shown;; ++index) {
      if (isEveryDay && index > 0 && index < shown) {
        if (!output_.skip((shown - index) * std::ssize(times_))) return;
        index = shown;
      }
      const auto span = periods_.at(index);
      if (!span || (span->first - margin) * kSecondsPerDay >= output_.end()) return;
      if (!budget_.take(1 + (span->behind - span->first) / 8) || !walkPeriod(*span)) return;
    }
  }

 private:
  bool walkPeriod(const DaySpan& span) {
    findDays(span);
    if (!positions_.empty()) return emitPositions({days_, times_}, positions_, output_);
    return std::all_of(days_.begin(), days_.end(),
                       [this](std::int64_t day) { return emitDay(day, times_, output_, budget_); });
  }

  void findDays(const DaySpan& span) {
    days_.clear();
    for (std::int64_t day = span.first; day < span.behind; ++day) {
      day = filter_.skippingMonth(day);
      if (day < span.behind && filter_.admits(day)) days_.push_back(day);
    }
    if (skipped_.mayOccur()) addSkippedDays(span);
  }

  // What has moved may meet what is there already, also of the period before.
  void addSkippedDays(const DaySpan& span) {
    const auto skipped = skipped_.of(span.first, span.behind);
    days_.insert(days_.end(), skipped.begin(), skipped.end());
    std::sort(days_.begin(), days_.end());
    days_.erase(std::unique(days_.begin(), days_.end()), days_.end());
    std::erase_if(days_, [this](std::int64_t day) { return day <= lastDay_; });
    if (!days_.empty()) lastDay_ = days_.back();
  }

  const std::vector<int>& positions_;
  RuleOutput& output_;
  StepBudget& budget_;
  DayFilter filter_;
  SkippedDays skipped_;
  Periods periods_;
  std::vector<int> times_;
  std::vector<std::int64_t> days_;  // of the period at hand, ascending
  std::int64_t lastDay_ = dayOf(kFirstTime) - 2;
};

}  // namespace

void expandByDays(const RecurrenceRule& rule, WallTime start, RuleOutput& output,
                  StepBudget& budget) {
  DaySeries(rule, start, output, budget).walk();
}

}  // namespace orvane::ical
