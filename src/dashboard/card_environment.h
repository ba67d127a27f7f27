#pragma once

#include <functional>

#include "dashboard/appearance.h"
#include "foundation/date.h"
#include "platform/calendar.h"
#include "platform/locale.h"

namespace orvane {

// What the board needs of the world. The references must outlive it.
struct DashboardEnvironment {
  const Locale& locale;
  const Calendar& calendar;
  std::function<Date()> clock;
};

// What every card and component is given when its view is made.
struct CardEnvironment {
  const DashboardAppearance& appearance;
  const Locale& locale;
};

}  // namespace orvane
