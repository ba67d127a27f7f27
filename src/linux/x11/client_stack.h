#pragma once

#include <map>
#include <optional>
#include <vector>

#include "foundation/main_actor.h"
#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// The windows that the window manager manages, in their stacking order, and which of them are the
// desktops of other programs (file managers, mostly). Empty without a window manager.
class ClientStack {
 public:
  ClientStack(Connection& connection, MainActor& actor);

  // A turn after the stack changed, once for several changes.
  [[nodiscard]] Subject<>& changed() { return changed_; }
  [[nodiscard]] bool hasDesktopWindow() const;
  // The topmost desktop of another program above this window; nothing when there is none, or when
  // the window is not in the stack.
  [[nodiscard]] std::optional<xcb_window_t> desktopAbove(xcb_window_t window) const;
  // The topmost window that is another program's desktop among all windows, managed or not. Waits
  // for the server's answers.
  [[nodiscard]] std::optional<xcb_window_t> findUnmanagedDesktop() const;

 private:
  void refresh();
  [[nodiscard]] bool isOtherDesktop(xcb_window_t window) const;

  Connection& connection_;
  MainActor& actor_;
  std::vector<xcb_window_t> bottomToTop_;
  std::map<xcb_window_t, bool> isDesktop_;  // of those in the stack
  Subject<> changed_;
  Subscription events_;
  Subscription turn_;
};

}  // namespace orvane::host::x11
