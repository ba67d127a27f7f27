#pragma once

#include "app/desktop_kinds.h"
#include "foundation/main_actor.h"
#include "linux/files/base_directory.h"
#include "platform/notification_center.h"
#include "platform/periodic_schedule.h"
#include "platform/session_sight.h"
#include "view/painter.h"
#include "view/text_measurer.h"

namespace orvane {

// What the windows of every desktop lean on. All of it outlives them.
struct Stage {
  MainActor& mainActor;
  PeriodicSchedule& schedule;
  NotificationCenter& notifications;
  const TextMeasurer& measurer;
  Painter& painter;
  SessionSight& session;
};

// The desktops that the environment may name: the Wayland compositor where it has the layer shell,
// else the X server.
[[nodiscard]] DesktopKinds desktopKinds(const host::Environment& environment, const Stage& stage);

}  // namespace orvane
