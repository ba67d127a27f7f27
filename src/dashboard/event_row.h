#pragma once

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// One of today's events: when it begins, its title and calendar, and how long it is until then. An
// all-day event says so instead of a time, and has nothing to wait for.
struct EventRow {
  DashboardEvent event;
  Date now = {};

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
