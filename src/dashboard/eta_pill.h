#pragma once

#include "dashboard/card_environment.h"
#include "foundation/date.h"
#include "view/view.h"

namespace orvane {

// How long it is until a date, in the colour of its urgency.
struct ETAPill {
  Date date = {};
  Date now = {};

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
