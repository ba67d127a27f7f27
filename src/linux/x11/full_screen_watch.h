#pragma once

#include <vector>

#include "foundation/main_actor.h"
#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// Follows the active window for as long as it fills a screen: what lies at the desktop's level
// behind it cannot be seen. A compositing manager keeps the server from telling so itself.
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
  void refresh();
  void follow(xcb_window_t window);
  void selectEvents(std::uint32_t mask) const;
  // The parts of the active window that nothing shines through, while it fills a screen.
  [[nodiscard]] std::vector<PixelRect> query() const;
  [[nodiscard]] bool fillsAScreen() const;
  [[nodiscard]] std::vector<PixelRect> opaqueParts(const PixelRect& onRoot) const;

  Connection& connection_;
  MainActor& actor_;
  xcb_window_t active_ = XCB_NONE;  // never one of ours
  std::vector<PixelRect> covered_;
  Subject<> changed_;
  Debounce settling_;
  Subscription turn_;
  Subscription events_;
};

}  // namespace orvane::host::x11
