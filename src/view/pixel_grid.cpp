#include "view/pixel_grid.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvane {
namespace {

// Sums such as 0.1 + 0.2 miss a pixel's edge by less than this, which must not cost a pixel.
constexpr double tolerance = 1e-6;

int clamped(double value) {
  constexpr double lowest = std::numeric_limits<int>::min();
  constexpr double highest = std::numeric_limits<int>::max();
  if (std::isnan(value)) return 0;
  return static_cast<int>(std::clamp(value, lowest, highest));
}

// Whatever two ints may be apart, as a length that is an int again.
int distance(int from, int to) {
  return clamped(static_cast<double>(to) - static_cast<double>(from));
}

}  // namespace

std::int64_t areaOf(const std::vector<PixelRect>& rects) {
  std::int64_t area = 0;
  for (const auto& rect : rects) {
    if (!rect.isEmpty()) area += std::int64_t{rect.width} * rect.height;
  }
  return area;
}

PixelRect pixelsCovering(const Rect& points, double scale) {
  if (points.isEmpty()) return {};
  const int left = clamped(std::floor(points.x * scale + tolerance));
  const int top = clamped(std::floor(points.y * scale + tolerance));
  const int right = clamped(std::ceil(points.right() * scale - tolerance));
  const int bottom = clamped(std::ceil(points.bottom() * scale - tolerance));
  return {left, top, distance(left, right), distance(top, bottom)};
}

Rect snappedToPixels(const Rect& points, double scale) {
  const double left = std::round(points.x * scale);
  const double top = std::round(points.y * scale);
  const double right = std::round(points.right() * scale);
  const double bottom = std::round(points.bottom() * scale);
  return {left / scale, top / scale, (right - left) / scale, (bottom - top) / scale};
}

}  // namespace orvane
