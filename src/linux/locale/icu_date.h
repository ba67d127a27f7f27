#pragma once

#include <unicode/utypes.h>

#include <cmath>

#include "foundation/date.h"

namespace orvane::host {

// ICU counts in milliseconds and gives up somewhat beyond this. What is no number is not usable
// either.
[[nodiscard]] inline bool isUsable(Date date) { return std::abs(date.secondsSince1970) < 8e12; }

[[nodiscard]] constexpr UDate toIcu(Date date) { return date.secondsSince1970 * 1000.0; }

}  // namespace orvane::host
