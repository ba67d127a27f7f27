#pragma once

#include <memory>

#include "linux/mainloop/wall_timer.h"
#include "platform/periodic_schedule.h"

namespace orvane::host {

// The beat of whole seconds on one timer. Subscriptions may outlive it and then hear nothing.
[[nodiscard]] std::unique_ptr<PeriodicSchedule> makePeriodicSchedule(
    std::unique_ptr<WallTimer> timer = makeWallTimer());

}  // namespace orvane::host
