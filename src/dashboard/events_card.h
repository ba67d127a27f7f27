#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "agenda/records.h"
#include "dashboard/card_environment.h"
#include "dashboard/today.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// The day's events, at most `mostRows` of them, under a header that counts them all; or, where
// there are none to be shown, why, or what comes next.
struct EventsCard {
  std::string title;
  EventList events;          // today's
  EventList upcomingEvents;  // of later days
  EventKitAuthorizationState authorizationState = EventKitAuthorizationState::unknown();
  Date now = {};

  static constexpr std::size_t mostRows = 7;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
  [[nodiscard]] std::string nextEventText(const Locale& locale) const;
  // What the shown rows count down to.
  [[nodiscard]] std::vector<Date> countdownDates() const;
};

}  // namespace orvane
