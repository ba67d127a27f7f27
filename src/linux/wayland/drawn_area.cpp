#include "linux/wayland/drawn_area.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "view/pixel_grid.h"

namespace orvane::host::wayland {
namespace {

// Steps beyond this would enlarge the surface more than sharp edges are worth.
constexpr int largestStep = 12;

struct Span {
  int begin = 0;
  int end = 0;
};

// From `begin` to `end`, widened to multiples of `step` as far as the output goes.
Span spanCovering(int begin, int end, int step, double outputLength) {
  const int last = static_cast<int>(std::ceil(std::clamp(outputLength, 0.0, 65535.0)));
  const int low = std::clamp(begin, 0, last) / step * step;
  const int high = (std::clamp(end, 0, last) + step - 1) / step * step;
  return {low, std::min(high, last)};
}

SurfaceArea unionOf(const SurfaceArea& a, const SurfaceArea& b) {
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  const int x = std::min(a.x, b.x);
  const int y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
          std::max(a.y + a.height, b.y + b.height) - y};
}

}  // namespace

SurfaceArea areaCovering(const Rect& drawn, SurfaceScale scale, Size output) {
  if (drawn.isEmpty()) return {};
  const int step = scale.step() <= largestStep ? scale.step() : 1;
  const Rect visible = intersectionOf(drawn, {0, 0, output.width, output.height});
  const PixelRect points = pixelsCovering(visible, 1);
  const Span across = spanCovering(points.x, points.x + points.width, step, output.width);
  const Span down = spanCovering(points.y, points.y + points.height, step, output.height);
  return {across.begin, down.begin, across.end - across.begin, down.end - down.begin};
}

SurfaceArea DrawnArea::update(const SurfaceArea& needed) {
  if (needed.isEmpty()) {
    reset();
    return {};
  }
  area_ = unionOf(area_, needed);
  if (needed == area_) {
    tooLarge_ = 0;
    recentlyNeeded_ = {};
    return area_;
  }
  recentlyNeeded_ = unionOf(recentlyNeeded_, needed);
  if (++tooLarge_ < patience) return area_;
  tooLarge_ = 0;
  area_ = std::exchange(recentlyNeeded_, {});
  return area_;
}

}  // namespace orvane::host::wayland
