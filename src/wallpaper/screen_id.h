#pragma once

#include <string>
#include <vector>

#include "platform/ns_window.h"
#include "wallpaper/display_option.h"

namespace orvane {

// What names a screen stably across runs: its number in decimal, or for one without a number its
// frame as "x:y:width:height", truncated to integers. A frame that no integers can hold stops the
// process.
[[nodiscard]] std::string screenID(const NSScreen& screen);

// The attached screens in the desktop's order, for the user to choose from. The sizes in the names
// are those of the visible frames.
[[nodiscard]] std::vector<DisplayOption> availableDisplays(const WindowServer& server);

}  // namespace orvane
