#pragma once

#include <functional>
#include <vector>

#include "agenda/records.h"
#include "foundation/date.h"
#include "platform/calendar.h"

namespace orvane {

// Some of the published events, not owned: there may be many more than are ever shown.
using EventList = std::vector<std::reference_wrapper<const DashboardEvent>>;

// Events by the day on which they start, each list in the given order.
struct EventsByDay {
  EventList today;
  EventList later;  // not today, and after the instant
};

// `now` says which day today is. An event of yesterday that is still going on is in neither list.
[[nodiscard]] EventsByDay eventsByDay(const std::vector<DashboardEvent>& events, Date now,
                                      const Calendar& calendar);

}  // namespace orvane
