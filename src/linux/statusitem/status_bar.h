// statusitem/ puts the program's item into the desktop's status area, as a StatusNotifierItem with
// a com.canonical.dbusmenu menu on the session bus.
#pragma once

#include <gio/gio.h>

#include <memory>

#include "foundation/main_actor.h"
#include "platform/ns_status_bar.h"
#include "view/painter.h"

namespace orvane::host {

struct StatusBarNeighbours {
  // Null: there is no session bus, and items are seen by nobody.
  GDBusConnection* connection = nullptr;
  MainActor& mainActor;
  Painter& painter;
};

// All of the neighbours outlive it, and it outlives its items. Main thread only.
[[nodiscard]] std::unique_ptr<NSStatusBar> makeStatusBar(const StatusBarNeighbours& neighbours);

}  // namespace orvane::host
