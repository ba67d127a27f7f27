#pragma once

#include <cstdint>
#include <limits>

#include "platform/ns_window.h"

namespace orvane::host::x11 {

// The stack of levels, of which X11 knows only whether a window is at the desktop or above it. The
// numbers only need to keep their order: desktop lowest, menus' backstop above it and below zero,
// which is where ordinary windows are.
[[nodiscard]] constexpr std::int32_t levelForKey(CGWindowLevelKey key) {
  switch (key) {
    case CGWindowLevelKey::desktopWindow:
      return std::numeric_limits<std::int32_t>::min() + 20;
    case CGWindowLevelKey::backstopMenu:
      break;
  }
  return -20;
}

[[nodiscard]] constexpr bool isDesktopLevel(std::int64_t level) {
  return level <= levelForKey(CGWindowLevelKey::desktopWindow);
}

}  // namespace orvane::host::x11
