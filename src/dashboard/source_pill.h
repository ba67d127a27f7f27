#pragma once

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "view/view.h"

namespace orvane {

// Says whether a deadline comes from a calendar or from a reminder.
struct SourcePill {
  DashboardDeadlineSource source = DashboardDeadlineSource::calendar;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
