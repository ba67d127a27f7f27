#pragma once

#include <string>

#include "dashboard/card_environment.h"
#include "view/view.h"

namespace orvane {

// In place of a list that is empty or may not be read.
struct EmptyStateView {
  std::string title;
  std::string detail;
  std::string systemImage;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
