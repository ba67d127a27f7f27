#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "linux/reader/calendar_item.h"
#include "linux/reader/rule_expansion.h"
#include "linux/reader/time_reading.h"
#include "linux/reader/window.h"
#include "linux/wire/reader_messages.h"

namespace orvane::ical {

// The items of one UID: the one that recurs, or stands alone, and those that replace single
// occurrences of it (or, in an invitation to one of them, stand there without it).
struct ItemFamily {
  std::optional<CalendarItem> master;
  std::vector<CalendarItem> overrides;  // one per RECURRENCE-ID
};

enum class Crowd {
  cut,     // the first ones are wanted
  dropped  // too many are as good as none
};

// The occurrences of an event that overlap the window, by their start; no more than `most`.
// Nothing when there are more and they were to be dropped.
std::optional<std::vector<wire::EventOccurrence>> expandEvent(const ItemFamily& family,
                                                              const TimeReading& times,
                                                              const Window& window,
                                                              StepBudget& budget, std::size_t most,
                                                              Crowd crowd);

}  // namespace orvane::ical
