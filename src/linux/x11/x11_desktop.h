#pragma once

#include <functional>
#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "platform/desktop_loss.h"
#include "platform/notification_center.h"
#include "platform/ns_window.h"
#include "platform/periodic_schedule.h"
#include "platform/session_sight.h"
#include "view/painter.h"
#include "view/text_measurer.h"

namespace orvane::host {

// What the windows lean on; all of it outlives them.
struct X11Neighbours {
  MainActor& mainActor;
  PeriodicSchedule& schedule;
  NotificationCenter& notifications;
  const TextMeasurer& measurer;
  Painter& painter;
  // Called once, in a turn of its own, when the X server is gone. Windows may still be made and
  // closed then, and show nothing.
  std::function<void(const DesktopLoss&)> onConnectionLost;
  // How long the first answers are waited for.
  Duration patience = std::chrono::seconds(10);
  // Asked twice a second meanwhile: whether there is no more use in it. May be empty.
  std::function<bool()> isInVain = {};
  // Nothing is drawn while the session is hidden. Null: that is not known here.
  SessionSight* session = nullptr;
};

// Either a server or the sentence that tells why there is none.
struct X11Desktop {
  std::unique_ptr<WindowServer> server;
  std::string failure;
};

// Connects to the display that DISPLAY names, on the default GLib main context. Waits for the
// server's first answers. Main thread only; so is everything that comes of it.
[[nodiscard]] X11Desktop makeX11Desktop(const X11Neighbours& neighbours);

}  // namespace orvane::host
