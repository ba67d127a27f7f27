#pragma once

#include <string>
#include <string_view>

#include "linux/reader/window.h"

namespace orvane::ical {

// What a glance at a component tells, without reading it: most items of a calendar lie in the past
// and need no more than that.
struct ItemScan {
  std::string uid;  // as it stands in the text; empty when there is none
  bool recurs = false;
  bool isOverride = false;
  // May be in the window, for all that the glance tells.
  bool mayOverlap = true;
  // Says that it is completed or cancelled.
  bool isSettled = false;
};

ItemScan scanItem(std::string_view text, const Window& window);

}  // namespace orvane::ical
