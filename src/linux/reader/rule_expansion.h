#pragma once

#include <functional>
#include <optional>

#include "linux/reader/recurrence_rule.h"

namespace orvane::ical {

// How much work may still be done; whoever works takes from it and stops when nothing is left.
class StepBudget {
 public:
  explicit StepBudget(std::int64_t steps) : left_(steps) {}
  bool take(std::int64_t steps = 1) {
    if (left_ < steps) {
      left_ = 0;
      return false;
    }
    left_ -= steps;
    return true;
  }
  [[nodiscard]] std::int64_t left() const { return left_; }

 private:
  std::int64_t left_;
};

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
