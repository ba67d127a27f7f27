#include "linux/reader/day_units.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace orvane::ical {

namespace {

std::int64_t positiveRemainder(std::int64_t dividend, std::int64_t divisor) {
  return dividend - floorDivide(dividend, divisor) * divisor;
}

std::vector<int> listOrAll(const std::vector<int>& list, int count) {
  if (!list.empty()) return list;
  std::vector<int> all(static_cast<std::size_t>(count));
  std::iota(all.begin(), all.end(), 0);
  return all;
}

// What the parts allow on any day, whatever INTERVAL makes of it.
std::vector<int> allowedUnits(const RecurrenceRule& rule) {
  std::vector<int> units;
  for (const int hour : listOrAll(rule.byHour, 24)) units.push_back(hour * 3600);
  const auto divide = [&units](const std::vector<int>& parts, int seconds) {
    std::vector<int> finer;
    finer.reserve(units.size() * parts.size());
    for (const int unit : units) {
      for (const int part : parts) finer.push_back(unit + part * seconds);
    }
    units = std::move(finer);
  };
  if (rule.frequency <= Frequency::minutely) divide(listOrAll(rule.byMinute, 60), 60);
  if (rule.frequency == Frequency::secondly) divide(listOrAll(rule.bySecond, 60), 1);
  return units;
}

bool choosesUnits(const RecurrenceRule& rule) {
  return !rule.byHour.empty() ||
         (!rule.byMinute.empty() && rule.frequency <= Frequency::minutely) ||
         (!rule.bySecond.empty() && rule.frequency == Frequency::secondly);
}

}  // namespace

UnitsOfDay::UnitsOfDay(std::int64_t first, std::int64_t step)
    : first_(first),
      step_(step),
      size_(std::max<std::int64_t>(0, ceilDivide(kSecondsPerDay - first, step))) {}

UnitsOfDay::UnitsOfDay(std::span<const int> listed) : listed_(listed), size_(std::ssize(listed)) {}

std::int64_t UnitsOfDay::at(std::int64_t index) const {
  return listed_.empty() ? first_ + index * step_ : listed_[static_cast<std::size_t>(index)];
}

std::int64_t UnitsOfDay::firstNotBefore(std::int64_t second) const {
  if (listed_.empty()) {
    return std::clamp<std::int64_t>(ceilDivide(second - first_, step_), 0, size_);
  }
  return std::lower_bound(listed_.begin(), listed_.end(), second) - listed_.begin();
}

DayUnits::DayUnits(const RecurrenceRule& rule, WallTime firstUnit)
    : step_(unitOf(rule.frequency) * rule.interval),
      firstUnit_(firstUnit),
      isChosen_(choosesUnits(rule)) {
  if (!isChosen_) return;
  for (const int unit : allowedUnits(rule)) {
    chosen_[unit % step_].push_back(unit);
  }
}

std::int64_t DayUnits::unitOf(Frequency frequency) {
  if (frequency == Frequency::hourly) return 3600;
  return frequency == Frequency::minutely ? 60 : 1;
}

std::int64_t DayUnits::workFor(const RecurrenceRule& rule) {
  if (!choosesUnits(rule)) return 1;
  const auto sizeOr = [](const std::vector<int>& list, std::int64_t all) {
    return list.empty() ? all : std::ssize(list);
  };
  std::int64_t units = sizeOr(rule.byHour, 24);
  if (rule.frequency <= Frequency::minutely) units *= sizeOr(rule.byMinute, 60);
  if (rule.frequency == Frequency::secondly) units *= sizeOr(rule.bySecond, 60);
  return units;
}

std::int64_t DayUnits::secondOfFirstStep(std::int64_t day) const {
  return positiveRemainder(firstUnit_ - day * kSecondsPerDay, step_);
}

UnitsOfDay DayUnits::on(std::int64_t day) const {
  const std::int64_t first = secondOfFirstStep(day);
  if (!isChosen_) return {first, step_};
  const auto chosen = chosen_.find(first);
  return chosen == chosen_.end() ? UnitsOfDay() : UnitsOfDay(chosen->second);
}

std::int64_t DayUnits::skippingStep(std::int64_t day) const {
  return day + secondOfFirstStep(day) / kSecondsPerDay;
}

}  // namespace orvane::ical
