#pragma once

#include <string>

#include "dashboard/appearance.h"
#include "foundation/color.h"
#include "foundation/date.h"

namespace orvane {

// The texts and colours of a target date, as seen at an instant. Intervals are cut to whole
// seconds towards zero; absurd ones are taken for the longest that can be written.

// "27:05:09": hours, which are neither capped nor split into days, minutes and seconds. A target
// in the past is zero.
[[nodiscard]] std::string countdownString(Date to, Date from);

// "now", "5m", "1h 0m" or "2d 5h", rounded down, but never "0m".
[[nodiscard]] std::string shortETA(Date to, Date from);

// Red when due, orange in the last half hour, yellow in the last two hours; the neutral colour
// before that, and always when urgency is not to be tinted.
[[nodiscard]] Color countdownColor(Date to, Date from, const DashboardAppearance& settings);

}  // namespace orvane
