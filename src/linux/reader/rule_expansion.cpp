#include "linux/reader/rule_expansion.h"

#include "linux/reader/day_series.h"
#include "linux/reader/rule_output.h"
#include "linux/reader/within_day_series.h"

namespace orvane::ical {

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
