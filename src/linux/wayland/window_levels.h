#pragma once

#include <cstdint>
#include <limits>

#include "platform/ns_window.h"

namespace orvane::host::wayland {

// The heights of the two levels that the layers of the protocol stand for: what is not above the
// desktop goes to the layer below ordinary windows, all else above them.
constexpr std::int32_t levelFor(CGWindowLevelKey key) {
  constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  switch (key) {
    case CGWindowLevelKey::desktopWindow:
      return lowest + 25;
    case CGWindowLevelKey::backstopMenu:
      return -20;
  }
  return 0;
}

}  // namespace orvane::host::wayland
