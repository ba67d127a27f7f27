#pragma once

#include <functional>

#include "foundation/date.h"
#include "foundation/subscription.h"

namespace orvane {

// The beat of every dashboard: whole wall-clock seconds, shared by all windows so that they wake
// the machine once. Main thread only.
class PeriodicSchedule {
 public:
  virtual ~PeriodicSchedule() = default;

  // Calls `tick` once a second with the scheduled instant, which is a whole second and not the
  // slightly later time of the call. After the machine slept, or the clock was set, the next call
  // has the new time; seconds that were slept through are not made up for. Nothing wakes the
  // machine while nobody is subscribed.
  virtual Subscription everySecond(std::function<void(Date)> tick) = 0;
};

}  // namespace orvane
