// wallpaper/ keeps one window with the board on each screen that should show it, and nothing on the
// others.
#pragma once

#include <string>

namespace orvane {

// A screen that the user may choose.
struct DisplayOption {
  std::string id;    // the screen id, as it stands in the settings
  std::string name;  // "Display 1 - Main"

  friend bool operator==(const DisplayOption&, const DisplayOption&) = default;
};

}  // namespace orvane
