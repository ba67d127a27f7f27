#pragma once

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

struct EventRow {
  DashboardEvent event;
  Date now = {};

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
