// statusitem/ puts the program's item into the desktop's status area, as a StatusNotifierItem with
// a com.canonical.dbusmenu menu on the session bus.
#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <string>

#include "foundation/main_actor.h"
#include "platform/ns_status_bar.h"
#include "view/painter.h"

namespace orvane::host {

struct StatusBarNeighbours {
  // Null: there is no session bus, and items are seen by nobody.
  GDBusConnection* connection = nullptr;
  MainActor& mainActor;
  Painter& painter;
  // Called with what lets a window take the focus just before a choice of a menu is carried out,
  // empty where the desktop gave nothing for it. May be null.
  std::function<void(const std::string& token)> takeActivationToken = nullptr;
};

// All of the neighbours outlive it, and it outlives its items. Main thread only.
[[nodiscard]] std::unique_ptr<NSStatusBar> makeStatusBar(const StatusBarNeighbours& neighbours);

}  // namespace orvane::host
