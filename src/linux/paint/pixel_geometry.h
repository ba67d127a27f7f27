#pragma once

#include <cstdint>
#include <vector>

#include "view/geometry.h"
#include "view/pixel_grid.h"

namespace orvane::host {

// Wide, since a rectangle that was clamped to the range of int ends beyond it.
[[nodiscard]] constexpr std::int64_t rightOf(const PixelRect& rect) {
  return std::int64_t{rect.x} + rect.width;
}
[[nodiscard]] constexpr std::int64_t bottomOf(const PixelRect& rect) {
  return std::int64_t{rect.y} + rect.height;
}
[[nodiscard]] PixelRect meeting(const PixelRect& a, const PixelRect& b);
[[nodiscard]] PixelRect joining(const PixelRect& a, const PixelRect& b);
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
