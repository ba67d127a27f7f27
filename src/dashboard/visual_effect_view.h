#pragma once

#include <cstdint>

#include "dashboard/card_environment.h"
#include "view/view.h"

namespace orvane {

enum class NSVisualEffectMaterial : std::uint8_t { hudWindow };
enum class NSVisualEffectBlendingMode : std::uint8_t { behindWindow, withinWindow };
enum class NSVisualEffectState : std::uint8_t { active, inactive };

// A pane of glass. What lies behind a desktop window cannot be read, so its blur is stood in for
// by a tint, dense enough that texts can be read over a picture of any brightness.
struct VisualEffectView {
  NSVisualEffectMaterial material = NSVisualEffectMaterial::hudWindow;
  NSVisualEffectBlendingMode blendingMode = NSVisualEffectBlendingMode::withinWindow;
  NSVisualEffectState state = NSVisualEffectState::active;

  [[nodiscard]] View body(const CardEnvironment& environment) const;
};

}  // namespace orvane
