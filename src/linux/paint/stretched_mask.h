#pragma once

#include <cstdint>

#include "linux/paint/blur.h"
#include "linux/paint/handles.h"
#include "linux/paint/pixel_geometry.h"

namespace orvane::host {

// The coverage of something whose corners matter and whose edges between them are all alike: a
// tile holds the corners, and its middle column and row are repeated until `full` is filled.
// Unlike a path that is filled under a clip, each pixel comes out the same whatever part is drawn.
struct StretchedMask {
  const Coverage& tile;
  PixelRect full;  // in pixels of the plane; no smaller than the tile

  // The part `area`, thinned to `opacity`.
  [[nodiscard]] SurfaceHandle part(const PixelRect& area, std::uint8_t opacity = 255) const;
  // Draws with the current source what lies in `area` but not in `hole`.
  void draw(cairo_t* cr, const PixelRect& hole, const PixelRect& area,
            std::uint8_t opacity = 255) const;
};

[[nodiscard]] SurfaceHandle makeCoverageSurface(int width, int height);
// Copies what was drawn.
[[nodiscard]] Coverage coverageOf(const SurfaceHandle& surface);

}  // namespace orvane::host
