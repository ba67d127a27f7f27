#include "linux/paint/gradient.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orvane::host {

namespace {

constexpr std::size_t mostRamps = 4;
// Strips keep the temporary picture small, whatever the height of a card.
constexpr int stripHeight = 32;

double between(double from, double to, double part) { return from + (to - from) * part; }

std::uint32_t component(double value, double opacity) {
  return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 1.0) * opacity * 255));
}

// Mixed as seen, by what each stop adds to the picture, so that a clear stop lends no colour.
std::uint32_t mixed(const SRGB& from, const SRGB& to, double part) {
  const double opacity = std::clamp(between(from.opacity, to.opacity, part), 0.0, 1.0);
  const auto channel = [&](double a, double b) {
    return component(between(a * from.opacity, b * to.opacity, part), 1);
  };
  const std::uint32_t alpha = component(opacity, 1);
  const auto within = [&](std::uint32_t value) { return std::min(value, alpha); };
  return alpha << 24 | within(channel(from.red, to.red)) << 16 |
         within(channel(from.green, to.green)) << 8 | within(channel(from.blue, to.blue));
}

// The place along the gradient, in steps, as a linear function of a pixel's place. In whole
// numbers, which add up to the same wherever one begins.
struct Axis {
  static constexpr int fractionBits = 32;
  std::int64_t perColumn;
  std::int64_t perRow;
  std::int64_t x0;
  std::int64_t y0;

  Axis(const Outline& o, int steps)
      : x0(static_cast<std::int64_t>(o.x)), y0(static_cast<std::int64_t>(o.y)) {
    const double unit = std::ldexp(steps / (o.width * o.width + o.height * o.height), fractionBits);
    perColumn = std::llround(o.width * unit);
    perRow = std::llround(o.height * unit);
  }
  // From the middle of the pixel, and rounded when the fraction is dropped.
  [[nodiscard]] std::int64_t at(int x, int y) const {
    return (x - x0) * perColumn + (y - y0) * perRow + (perColumn + perRow) / 2 +
           (std::int64_t{1} << (fractionBits - 1));
  }
};

}  // namespace

GradientDrawing::Ramp GradientDrawing::makeRamp(const LinearGradient& gradient) {
  Ramp ramp{gradient, {}};
  std::array<SRGB, 3> stops;
  std::ranges::transform(gradient.stops, stops.begin(),
                         [](const Color& c) { return c.resolved(); });
  for (int step = 0; step <= steps; ++step) {
    const double place = 2.0 * step / steps;
    const std::size_t first = place < 1 ? 0 : 1;
    ramp.colors[step] = mixed(stops[first], stops[first + 1], place - static_cast<double>(first));
  }
  return ramp;
}

const GradientDrawing::Ramp& GradientDrawing::ramp(const LinearGradient& gradient) {
  const auto known = std::ranges::find(ramps_, gradient, &Ramp::gradient);
  if (known != ramps_.end()) return *known;
  if (ramps_.size() == mostRamps) ramps_.erase(ramps_.begin());
  return ramps_.emplace_back(makeRamp(gradient));
}

void GradientDrawing::fillStrip(cairo_t* cr, const Ramp& colors, const Outline& outline,
                                const PixelRect& strip) {
  const SurfaceHandle surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, strip.width, strip.height));
  unsigned char* data = cairo_image_surface_get_data(surface.get());
  if (!data) return;
  const int stride = cairo_image_surface_get_stride(surface.get());
  const Axis axis(outline, steps);
  for (int y = 0; y < strip.height; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(data + std::ptrdiff_t{y} * stride);
    std::int64_t place = axis.at(strip.x, strip.y + y);
    for (int x = 0; x < strip.width; ++x, place += axis.perColumn)
      row[x] = colors.colors[std::clamp<std::int64_t>(place >> Axis::fractionBits, 0, steps)];
  }
  cairo_surface_mark_dirty(surface.get());
  cairo_set_source_surface(cr, surface.get(), strip.x, strip.y);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
  outlines_.fill(cr, outline, strip);
}

void GradientDrawing::fill(cairo_t* cr, const LinearGradient& gradient, const Outline& outline,
                           const PixelRect& area) {
  if (isEmpty(outline)) return;
  const Ramp& colors = ramp(gradient);
  for (int y = area.y; y < bottomOf(area); y += stripHeight)
    fillStrip(cr, colors, outline,
              intersectionOf(area, PixelRect{area.x, y, area.width, stripHeight}));
}

}  // namespace orvane::host
