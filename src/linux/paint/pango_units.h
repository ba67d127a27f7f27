#pragma once

#include <pango/pango.h>

namespace orvane::host {

// Pango counts in parts of a point.
[[nodiscard]] constexpr double toPoints(int pangoUnits) {
  return static_cast<double>(pangoUnits) / PANGO_SCALE;
}

}  // namespace orvane::host
