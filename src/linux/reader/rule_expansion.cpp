#include "linux/reader/rule_expansion.h"

#include <ctime>

#include "linux/reader/day_series.h"
#include "linux/reader/rule_output.h"
#include "linux/reader/within_day_series.h"

namespace orvane::ical {

namespace {

constexpr std::int64_t kStepsBetweenLooks = 4096;

}  // namespace

StepBudget::Duration processorTime() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

StepBudget::StepBudget(std::int64_t steps, Duration time)
    : left_(steps),
      nextLook_(time == Duration::max() ? -1 : steps - kStepsBetweenLooks),
      end_(time == Duration::max() ? time : processorTime() + time) {}

bool StepBudget::lookAtTime() {
  if (processorTime() >= end_) {
    left_ = 0;
    return false;
  }
  nextLook_ = left_ - kStepsBetweenLooks;
  return true;
}

void expandRule(const RecurrenceRule& rule, WallTime start, std::optional<WallTime> until,
                ExpansionRange range, StepBudget& budget, const VisitTime& visit) {
  RuleOutput output(rule, start, until, range, visit);
  if (!output.begin()) return;
  if (rule.frequency >= Frequency::daily) {
    expandByDays(rule, start, output, budget);
  } else {
    expandWithinDays(rule, start, output, budget);
  }
}

}  // namespace orvane::ical
