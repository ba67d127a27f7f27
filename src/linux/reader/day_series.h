#pragma once

#include "linux/reader/rule_output.h"

namespace orvane::ical {

// Rules that repeat by days, weeks, months or years: period by period, its days, their times.
void expandByDays(const RecurrenceRule& rule, WallTime start, RuleOutput& output,
                  StepBudget& budget);

}  // namespace orvane::ical
