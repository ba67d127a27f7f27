#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "linux/reader/rule_expansion.h"

namespace orvane::ical {

// The receiving end of an expansion: knows the start, COUNT, UNTIL and the range, and is over once
// nothing can follow.
class RuleOutput {
 public:
  RuleOutput(const RecurrenceRule& rule, WallTime start, std::optional<WallTime> until,
             ExpansionRange range, const VisitTime& visit)
      : range_(range),
        visit_(visit),
        start_(start),
        end_(until ? std::min(range.to, *until + 1) : range.to),
        isCounted_(rule.count > 0),
        left_(rule.count) {}

  // The start comes first; answers whether anything can follow.
  bool begin() {
    if (start_ >= range_.from && start_ < range_.to && !visit_(start_)) return false;
    if (isCounted_ && --left_ == 0) return false;
    return start_ < end_;
  }

  // Times come ascending; those up to the start are not the rule's. Answers whether to go on.
  bool accept(WallTime time) {
    if (time <= start_) return true;
    if (time >= end_) return false;
    if (time >= range_.from && !visit_(time)) return false;
    return !isCounted_ || --left_ > 0;
  }

  // Counts times that lie between the start and the range without naming them.
  bool skip(std::int64_t times) {
    left_ -= times;
    return !isCounted_ || left_ > 0;
  }

  [[nodiscard]] bool isCounted() const { return isCounted_; }
  [[nodiscard]] WallTime start() const { return start_; }
  [[nodiscard]] WallTime from() const { return range_.from; }
  [[nodiscard]] WallTime end() const { return end_; }

 private:
  ExpansionRange range_;
  const VisitTime& visit_;
  WallTime start_;
  WallTime end_;  // exclusive
  bool isCounted_;
  std::int64_t left_;
};

}  // namespace orvane::ical
