#pragma once

#include <string>

#include "dashboard/card_environment.h"
#include "foundation/color.h"
#include "view/view.h"

namespace orvane {

// A time of day with a thin bar beside it, of one width so that what follows lines up from row to
// row.
struct TimeRail {
  std::string text;
  Color color;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
