#include "linux/paint/pixel_geometry.h"

#include <algorithm>
#include <cmath>

namespace orvane::host {

namespace {

// cairo's coordinates have 24 bits before the point, and we add margins to ours.
constexpr double farthest = 1 << 22;

}  // namespace

PixelRect grownBy(const PixelRect& rect, int amount) {
  return {rect.x - amount, rect.y - amount, rect.width + 2 * amount, rect.height + 2 * amount};
}

PixelRect movedBy(const PixelRect& rect, int dx, int dy) {
  return {rect.x + dx, rect.y + dy, rect.width, rect.height};
}

bool contains(const PixelRect& outer, const PixelRect& inner) {
  return outer.x <= inner.x && outer.y <= inner.y && rightOf(outer) >= rightOf(inner) &&
         bottomOf(outer) >= bottomOf(inner);
}

int toPixels(double points, double scale) {
  const double pixels = points * scale;
  if (std::isnan(pixels)) return 0;
  // Halves are rounded up, on both sides of zero alike, so that rounding commutes with moving.
  return static_cast<int>(std::floor(std::clamp(pixels, -farthest, farthest) + 0.5));
}

PixelRect snapped(const Rect& points, double scale) {
  const int x = toPixels(points.x, scale);
  const int y = toPixels(points.y, scale);
  return {x, y, toPixels(points.right(), scale) - x, toPixels(points.bottom(), scale) - y};
}

std::vector<PixelRect> apart(std::vector<PixelRect> rects) {
  std::vector<PixelRect> result;
  while (!rects.empty()) {
    PixelRect rect = rects.back();
    rects.pop_back();
    if (rect.isEmpty()) continue;
    const auto met = std::ranges::find_if(
        result, [&](const PixelRect& other) { return !intersectionOf(rect, other).isEmpty(); });
    if (met == result.end()) {
      result.push_back(rect);
      continue;
    }
    // The joined one may meet others that neither of the two met.
    rects.push_back(unionOf(rect, *met));
    result.erase(met);
  }
  return result;
}

}  // namespace orvane::host
