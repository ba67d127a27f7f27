#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "linux/reader/recurrence_rule.h"

namespace orvane::ical {

// How much work may still be done; whoever works takes from it and stops when nothing is left.
class StepBudget {
 public:
  using Duration = std::chrono::nanoseconds;

  // What steps cost differs widely; so they are also over when they have kept the processor busy
  // for `time`.
  explicit StepBudget(std::int64_t steps, Duration time = Duration::max());
  bool take(std::int64_t steps = 1) {
    if (left_ < steps) left_ = 0;
    if (left_ == 0) return false;
    left_ -= steps;
    return left_ > nextLook_ || lookAtTime();
  }
  [[nodiscard]] std::int64_t left() const { return left_; }

 private:
  bool lookAtTime();

  std::int64_t left_;
  std::int64_t nextLook_;  // when no more than so many steps are left
  Duration end_;
};

// For how long the processor has been busy with this thread.
StepBudget::Duration processorTime();

// The times in which a series is asked for.
struct ExpansionRange {
  WallTime from = kFirstTime;
  WallTime to = kBehindLastTime;  // exclusive
};

// Answers false to hear of no more.
using VisitTime = std::function<bool(WallTime)>;

// Visits the times of a rule from `start` on that lie within the range, ascending. The start
// itself is always the first of them and counts, also when the rule does not match it
// (RFC 5545 section 3.8.5.3). `until` is the rule's end as a time of the start's kind, inclusive.
//
// This is our own, and not the library's iterator, because that one walks every step from the start
// of a rule with a COUNT, has no bound on the steps of a rule that never matches, and can thus take
// hours for one line of text. Here what lies before the range is skipped or counted arithmetically.
void expandRule(const RecurrenceRule& rule, WallTime start, std::optional<WallTime> until,
                ExpansionRange range, StepBudget& budget, const VisitTime& visit);

}  // namespace orvane::ical
