#pragma once

#include "dashboard/card_environment.h"
#include "view/shape.h"
#include "view/view.h"

namespace orvane {

// The translucent surface that every card lies on, as wide as it may be.
struct GlassPanel {
  // What of it does not depend on what lies on it.
  struct Glass {
    View behind;
    View border;
    Color shadow;
  };

  View content;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
  [[nodiscard]] View body(const Glass& glass) const;
  [[nodiscard]] static Glass glass(const CardEnvironment& environment);
  // From the top-leading to the bottom-trailing corner.
  [[nodiscard]] static LinearGradient panelGradient(const DashboardAppearance& settings);
};

}  // namespace orvane
