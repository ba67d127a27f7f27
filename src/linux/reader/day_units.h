#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "linux/reader/recurrence_rule.h"

namespace orvane::ical {

// The units of time (hours, minutes or seconds, as a rule repeats) of one day that a rule means:
// where they begin, in seconds since midnight, ascending.
class UnitsOfDay {
 public:
  UnitsOfDay() = default;
  // `first`, and one every `step` seconds up to midnight.
  UnitsOfDay(std::int64_t first, std::int64_t step);
  explicit UnitsOfDay(std::span<const int> listed);

  [[nodiscard]] std::int64_t size() const { return size_; }
  [[nodiscard]] std::int64_t at(std::int64_t index) const;
  // The index of the first that begins at `second` or later; size() when there is none.
  [[nodiscard]] std::int64_t firstNotBefore(std::int64_t second) const;

 private:
  std::span<const int> listed_;  // empty when they are counted by their step
  std::int64_t first_ = 0, step_ = 1;
  std::int64_t size_ = 0;
};

// Knows without looking at every unit which of them a rule that repeats within days can mean by
// its INTERVAL and its parts BYHOUR, BYMINUTE and BYSECOND. INTERVAL need not divide the day: what
// it leaves of the units that the parts allow depends on where in the day its first step falls.
class DayUnits {
 public:
  // Counts from `firstUnit`, a multiple of the rule's unit of time.
  DayUnits(const RecurrenceRule& rule, WallTime firstUnit);

  // Those of a day, as if the rule had been going on since ever. Valid as long as this.
  [[nodiscard]] UnitsOfDay on(std::int64_t day) const;
  // Whether they are the same on every day.
  [[nodiscard]] bool areDaily() const { return kSecondsPerDay % step_ == 0; }
  // The day itself, or the first after it on which the rule takes a step.
  [[nodiscard]] std::int64_t skippingStep(std::int64_t day) const;

  // Of hours 3600 seconds, and so on.
  [[nodiscard]] static std::int64_t unitOf(Frequency frequency);
  // How many steps of work it is to make this for a rule.
  [[nodiscard]] static std::int64_t workFor(const RecurrenceRule& rule);

 private:
  [[nodiscard]] std::int64_t secondOfFirstStep(std::int64_t day) const;

  std::int64_t step_;
  WallTime firstUnit_;
  bool isChosen_;
  // By the second of the day on which a step falls first, from midnight on.
  std::unordered_map<std::int64_t, std::vector<int>> chosen_;
};

}  // namespace orvane::ical
