#pragma once

#include "dashboard/card_environment.h"
#include "view/shape.h"
#include "view/view.h"

namespace orvane {

// The translucent surface that every card lies on, as wide as it may be.
struct GlassPanel {
  View content;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
  // From the top-leading to the bottom-trailing corner.
  [[nodiscard]] static LinearGradient panelGradient(const DashboardAppearance& settings);
};

}  // namespace orvane
