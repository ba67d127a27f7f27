#pragma once

#include "foundation/date.h"
#include "foundation/main_actor.h"
#include "platform/calendar.h"

namespace orvane {

// How long to sleep at `now` so as to wake safely past the next local midnight: two seconds after
// it, but never less than a minute from now. Just before midnight that is up to a minute late,
// which is better than early. In whole nanoseconds, truncated.
[[nodiscard]] Duration delayUntilNextDay(const Calendar& calendar, Date now);

// `delay` in whole nanoseconds, truncated. Stops the process where 64 bits cannot hold them.
[[nodiscard]] Duration wholeNanoseconds(TimeInterval delay);

}  // namespace orvane
