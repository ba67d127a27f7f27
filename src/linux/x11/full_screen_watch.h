#pragma once

#include <vector>

#include "foundation/main_actor.h"
#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// Follows the windows that fill a screen: what lies at the desktop's level behind them cannot be
// seen. A compositing manager keeps the server from telling so itself. Only those are followed that
// were active since they were opened, or were there at first, so that nothing is asked about the
// others.
class FullScreenWatch {
 public:
  // The rest after which a window that changes its size is looked at, since one that is being
  // dragged does so with every frame.
  static constexpr Duration quiet = std::chrono::milliseconds(200);

  FullScreenWatch(Connection& connection, MainActor& actor);

  // Whether nothing of this area, in pixels of the root, is to be seen.
  [[nodiscard]] bool covers(const PixelRect& area) const;
  // Other areas are covered than before. What is uncovered is told of within a turn of the loop.
  [[nodiscard]] Subject<>& changed() { return changed_; }

 private:
  void take(const xcb_generic_event_t& event);
  [[nodiscard]] bool concerns(const xcb_property_notify_event_t& property) const;
  [[nodiscard]] bool isFollowed(xcb_window_t window) const;
  void refresh();
  void learnFirst();
  // Keeps the active window and those that fill a screen.
  void follow(xcb_window_t active);
  void selectEvents(xcb_window_t window, std::uint32_t mask) const;
  // The parts that nothing shines through of the windows that fill a screen.
  [[nodiscard]] std::vector<PixelRect> query() const;
  [[nodiscard]] bool isOnShownDesktop(xcb_window_t window) const;
  [[nodiscard]] std::vector<PixelRect> opaqueParts(xcb_window_t window) const;

  Connection& connection_;
  MainActor& actor_;
  xcb_window_t active_ = XCB_NONE;  // never one of ours
  std::vector<xcb_window_t> filling_;
  std::vector<PixelRect> covered_;
  Subject<> changed_;
  Debounce settling_;
  Subscription turn_;
  Subscription events_;
};

}  // namespace orvane::host::x11
