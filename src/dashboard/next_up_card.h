#pragma once

#include <optional>

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// The countdown to the next deadline.
struct NextUpCard {
  std::optional<DashboardDeadline> deadline;
  Date now = {};

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
