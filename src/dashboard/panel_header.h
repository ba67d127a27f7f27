#pragma once

#include <cstdint>
#include <string>

#include "dashboard/card_environment.h"
#include "view/view.h"

namespace orvane {

// A card's title, and how many items it is about.
struct PanelHeader {
  std::string title;
  std::int64_t count = 0;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
