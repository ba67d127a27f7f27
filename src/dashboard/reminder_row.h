#pragma once

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// One reminder: a ring in the colour of its priority, its title and list, when it is due and how
// long it is until then.
struct ReminderRow {
  DashboardReminder reminder;
  Date now = {};

  [[nodiscard]] View body(const CardEnvironment& environment) const;
  // Of the ring: red for the high priorities 1 to 4, orange for 5, yellow for the low ones up to
  // 9; neutral for none.
  [[nodiscard]] Color priorityColor(const DashboardAppearance& settings) const;
};

}  // namespace orvane
