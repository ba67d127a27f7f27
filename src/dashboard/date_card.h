#pragma once

#include <optional>
#include <string>

#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// The day, and when the board was last brought up to date.
struct DateCard {
  std::optional<Date> lastRefreshDate;

  // `today` is read from the clock by whoever makes the view.
  [[nodiscard]] View body(Date today, const CardEnvironment& environment) const;
  [[nodiscard]] std::string refreshText(const Locale& locale) const;
};

}  // namespace orvane
