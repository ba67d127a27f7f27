#pragma once

#include "linux/wayland/surface_scale.h"
#include "view/geometry.h"

namespace orvane::host::wayland {

// The place of a surface on its output, in points, from the output's top left corner.
struct SurfaceArea {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
  friend bool operator==(const SurfaceArea&, const SurfaceArea&) = default;
};

// The smallest area that holds what is drawn, lies on whole pixels where the scale allows it, and
// keeps within an output of the given size.
[[nodiscard]] SurfaceArea areaCovering(const Rect& drawn, SurfaceScale scale, Size output);

// All of an output, to the last point that it shows any part of.
[[nodiscard]] SurfaceArea wholeOutput(Size output);

}  // namespace orvane::host::wayland
