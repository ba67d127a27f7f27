#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/x11/connection.h"
#include "linux/x11/edid.h"
#include "platform/ns_screen.h"

namespace orvane::host::x11 {

// One monitor as the server describes it, in pixels of the root window.
struct Monitor {
  std::string connector;  // "DP-1"; empty where the server has no monitors but only its root
  MonitorModel model;
  PixelRect frame;
  bool isPrimary = false;
  friend bool operator==(const Monitor&, const Monitor&) = default;
};

// The active ones in the server's order, without mirrors; the root window as one monitor where
// RandR 1.5 is missing. Empty while every output is off. Waits for the server's answers.
std::vector<Monitor> queryMonitors(const Connection& connection);

// All monitors show parts of one root window: two boards on top of each other would serve nobody.
// So only those are left that show something that no other one does, and of several with the same
// frame the first. One that shows what the primary monitor showed is primary in its place. No frame
// may be empty.
[[nodiscard]] std::vector<Monitor> withoutMirrors(const std::vector<Monitor>& all);

// A positive number of 31 bits: the FNV-1a hash of connector, make and model, each ended by a zero
// byte. Nothing for a monitor without a connector, since two of one model would share it.
[[nodiscard]] std::optional<std::int64_t> screenNumber(const Monitor& monitor);

// The primary monitor, or else the one whose corner lies nearest to the origin; of two, the one
// whose connector sorts first. Nothing when there is none.
[[nodiscard]] std::optional<std::size_t> mainMonitor(const std::vector<Monitor>& monitors);

// A monitor in points. `workArea`, in pixels, is what panels leave free of the whole root; where it
// does not meet the monitor, or is not known, the visible frame is the whole one.
[[nodiscard]] NSScreen screenOf(const Monitor& monitor, double scale,
                                const std::optional<PixelRect>& workArea);

}  // namespace orvane::host::x11
