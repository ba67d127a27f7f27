// linux/wayland/ shows windows through the layer shell of a Wayland compositor and tells the
// compositor's outputs as screens. It speaks the protocols itself and draws into shared memory.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "platform/desktop_loss.h"
#include "platform/notification_center.h"
#include "platform/ns_window.h"
#include "platform/periodic_schedule.h"
#include "view/painter.h"
#include "view/text_measurer.h"

namespace orvane::host {

// What the windows lean on; all of it outlives them.
struct WaylandNeighbours {
  MainActor& mainActor;
  PeriodicSchedule& schedule;
  NotificationCenter& notifications;
  const TextMeasurer& measurer;
  Painter& painter;
  // Called once, in a turn of its own, when the compositor is gone. The server then has no screens
  // and its windows show nothing; windows may still be made and closed.
  std::function<void(const DesktopLoss&)> onConnectionLost;
  // How long the first answers are waited for.
  Duration patience = std::chrono::seconds(10);
  // Asked twice a second meanwhile: whether there is no more use in it. May be empty.
  std::function<bool()> isInVain = {};
};

// Either a server or the sentence that tells why there is none.
struct WaylandDesktop {
  std::unique_ptr<WindowServer> server;
  std::string failure;
};

// Connects to the compositor that the environment names, on the default GLib main context. Waits
// for the compositor's first answers. Main thread only; so is everything that comes of it.
[[nodiscard]] WaylandDesktop makeWaylandDesktop(const WaylandNeighbours& neighbours);

}  // namespace orvane::host
