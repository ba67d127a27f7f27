#pragma once

#include <optional>

#include "linux/reader/event_expansion.h"
#include "linux/reader/rule_expansion.h"
#include "linux/reader/time_reading.h"
#include "linux/wire/reader_messages.h"

namespace orvane::ical {

// The one reminder that a task is, however often it recurs: due at its earliest occurrence that is
// neither completed, cancelled nor excluded. Nothing when none is open.
std::optional<wire::OpenTask> readTask(const ItemFamily& family, const TimeReading& times,
                                       StepBudget& budget);

}  // namespace orvane::ical
