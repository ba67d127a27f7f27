#pragma once

#include "view/geometry.h"

namespace orvane {

struct PixelPoint {
  int x = 0;
  int y = 0;
  friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  [[nodiscard]] constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

// Every pixel that `points` touches at `scale` pixels per point. Values beyond the range of int
// are clamped to it.
PixelRect pixelsCovering(const Rect& points, double scale);

// The edge of a rectangle rounded to the nearest pixel from its absolute position, so that
// neighbours that share an edge in points share it in pixels.
Rect snappedToPixels(const Rect& points, double scale);  // in points

}  // namespace orvane
