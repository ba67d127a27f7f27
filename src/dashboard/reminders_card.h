#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// The open reminders, at most `mostRows` of them, under a header that counts them all; or why there
// are none to be shown.
struct RemindersCard {
  std::span<const DashboardReminder> reminders;  // not owned
  EventKitAuthorizationState authorizationState = EventKitAuthorizationState::unknown();
  Date now = {};

  static constexpr std::size_t mostRows = 9;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
  // What the shown rows count down to.
  [[nodiscard]] std::vector<Date> countdownDates() const;
};

}  // namespace orvane
