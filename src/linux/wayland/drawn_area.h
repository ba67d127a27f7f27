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

// How large a surface is kept while what is drawn changes: it grows at once and shrinks only when
// it was too large for a while, so that a text that changes its length does not cost a new surface
// each time. Nothing drawn is no area, at once.
class DrawnArea {
 public:
  // Pictures in a row that the surface must have been too large for.
  static constexpr int patience = 10;

  SurfaceArea update(const SurfaceArea& needed);
  void reset() { *this = DrawnArea(); }

 private:
  SurfaceArea area_;
  SurfaceArea recentlyNeeded_;  // by the pictures since it last was as large as needed
  int tooLarge_ = 0;
};

}  // namespace orvane::host::wayland
