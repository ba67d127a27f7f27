#include "linux/wayland/surface_area.h"

#include <algorithm>
#include <cmath>

#include "view/pixel_grid.h"

namespace orvane::host::wayland {
namespace {

// Steps beyond this would enlarge the surface more than sharp edges are worth.
constexpr int largestStep = 12;

struct Span {
  int begin = 0;
  int end = 0;
};

int lastPoint(double outputLength) {
  return static_cast<int>(std::ceil(std::clamp(outputLength, 0.0, 65535.0)));
}

// From `begin` to `end`, widened to multiples of `step` as far as the output goes.
Span spanCovering(int begin, int end, int step, double outputLength) {
  const int last = lastPoint(outputLength);
  const int low = std::clamp(begin, 0, last) / step * step;
  const int high = (std::clamp(end, 0, last) + step - 1) / step * step;
  return {low, std::min(high, last)};
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

SurfaceArea wholeOutput(Size output) {
  return {0, 0, lastPoint(output.width), lastPoint(output.height)};
}

}  // namespace orvane::host::wayland
