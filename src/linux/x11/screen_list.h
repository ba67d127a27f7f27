#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "foundation/main_actor.h"
#include "linux/x11/connection.h"
#include "linux/x11/monitors.h"
#include "platform/notification_center.h"
#include "platform/ns_screen.h"

namespace orvane::host::x11 {

// The screens of the display and its scale, kept up to date. A burst of changes is looked at once,
// when it is over, and announced only if something differs.
class ScreenList {
 public:
  // The rest that ends a burst: a monitor that is plugged in sends events over some tenths of a
  // second.
  static constexpr Duration quiet = std::chrono::milliseconds(100);

  ScreenList(Connection& connection, MainActor& actor, NotificationCenter& notifications);

  [[nodiscard]] const std::vector<NSScreen>& screens() const { return now_.screens; }
  [[nodiscard]] std::optional<NSScreen> mainScreen() const;
  [[nodiscard]] double scale() const { return now_.scale; }  // pixels per point
  // Told of after all others have been.
  [[nodiscard]] Subject<>& changed() { return changed_; }

 private:
  struct State {
    double scale = 1;
    std::vector<NSScreen> screens;
    std::optional<std::size_t> main;
    friend bool operator==(const State&, const State&) = default;
  };

  void watch();
  [[nodiscard]] bool concernsScreens(const xcb_generic_event_t& event) const;
  [[nodiscard]] State query() const;
  [[nodiscard]] std::optional<PixelRect> workArea() const;
  void refresh();

  Connection& connection_;
  NotificationCenter& notifications_;
  State now_;
  Subject<> changed_;
  Debounce settling_;
  Subscription events_;
};

}  // namespace orvane::host::x11
