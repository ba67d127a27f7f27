#pragma once

#include <vector>

#include "view/geometry.h"
#include "view/pixel_grid.h"

namespace orvane::host {

[[nodiscard]] PixelRect grownBy(const PixelRect& rect, int amount);
[[nodiscard]] PixelRect movedBy(const PixelRect& rect, int dx, int dy);
[[nodiscard]] bool contains(const PixelRect& outer, const PixelRect& inner);

// A length in points as a whole number of pixels. Lengths beyond any screen are clamped.
[[nodiscard]] int toPixels(double points, double scale);
// The rectangle with each edge at the pixel edge nearest to it.
[[nodiscard]] PixelRect snapped(const Rect& points, double scale);

// The same area without overlaps: rectangles that meet are joined. The empty ones are dropped.
[[nodiscard]] std::vector<PixelRect> apart(std::vector<PixelRect> rects);

}  // namespace orvane::host
