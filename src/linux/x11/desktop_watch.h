#pragma once

#include <string>

#include "foundation/main_actor.h"
#include "linux/x11/client_stack.h"
#include "linux/x11/connection.h"

namespace orvane::host::x11 {

// Who manages and composes the windows of a screen.
struct DesktopKind {
  // The window that stands for the window manager; another one after it was replaced, none (0)
  // without one.
  xcb_window_t managerWindow = 0;
  std::string managerName;         // as it calls itself; empty without one
  bool isCompositing = false;      // windows with an alpha channel are seen through
  bool blursBehind = false;        // what lies behind such windows, where they ask for it
  bool restacksOnRequest = false;  // the manager takes _NET_RESTACK_WINDOW
  bool hasDesktopWindow = false;   // another program shows the desktop's picture or icons
  friend bool operator==(const DesktopKind&, const DesktopKind&) = default;
};

// Follows the window manager and the compositing manager as they come, go and are replaced.
class DesktopWatch {
 public:
  // The rest after which a change is believed: managers that replace each other leave a gap.
  static constexpr Duration quiet = std::chrono::milliseconds(100);

  DesktopWatch(Connection& connection, MainActor& actor, ClientStack& stack);

  [[nodiscard]] const DesktopKind& kind() const { return kind_; }
  // When the kind is another than before.
  [[nodiscard]] Subject<>& changed() { return changed_; }

 private:
  void watch();
  [[nodiscard]] bool concernsManagers(const xcb_generic_event_t& event) const;
  [[nodiscard]] DesktopKind query() const;
  void refresh();

  Connection& connection_;
  ClientStack& stack_;
  DesktopKind kind_;
  Subject<> changed_;
  Debounce settling_;
  Subscription events_;
  Subscription stackChanges_;
};

}  // namespace orvane::host::x11
