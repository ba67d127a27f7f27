#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "view/geometry.h"

namespace orvane {

// One attached screen as it is at the time of asking. Coordinates are points, origin top left, in
// the layout that all screens share.
struct NSScreen {
  Rect frame;         // all of it
  Rect visibleFrame;  // without the areas that panels reserve
  // The device description's "NSScreenNumber": derived from connector and model, stable across
  // runs; absent where the desktop tells too little to derive one.
  std::optional<std::int64_t> screenNumber;
  // Which screen of the desktop this is; equal for the same screen in successive answers.
  std::string identity;

  friend bool operator==(const NSScreen&, const NSScreen&) = default;
};

// Posted when a screen was attached, removed, resized, rescaled or moved, or another became main.
inline constexpr const char* NSApplicationDidChangeScreenParametersNotification =
    "NSApplicationDidChangeScreenParametersNotification";

}  // namespace orvane
