#pragma once

#include <optional>
#include <vector>

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "dashboard/glass_panel.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// The countdown to the next deadline.
struct NextUpCard {
  // What stays as it is while the seconds pass.
  struct Still {
    GlassPanel::Glass glass;
    View header;
    std::vector<View> below;  // the lines under the countdown
  };

  std::optional<DashboardDeadline> deadline;
  Date now = {};

  [[nodiscard]] View body(const CardEnvironment& environment) const;
  [[nodiscard]] View body(const CardEnvironment& environment, const Still& still) const;
  [[nodiscard]] Still still(const CardEnvironment& environment) const;
};

}  // namespace orvane
