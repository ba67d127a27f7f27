#pragma once

#include "linux/reader/rule_output.h"

namespace orvane::ical {

// Rules that repeat by hours, minutes or seconds.
void expandWithinDays(const RecurrenceRule& rule, WallTime start, RuleOutput& output,
                      StepBudget& budget);

}  // namespace orvane::ical
