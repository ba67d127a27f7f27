#include "linux/paint/outline_masks.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvane::host {

namespace {

constexpr int largestTile = 4096;  // pixels along a side

PixelRect placeOf(const Outline& outline) {
  return {static_cast<int>(outline.x), static_cast<int>(outline.y), static_cast<int>(outline.width),
          static_cast<int>(outline.height)};
}

void fillRect(cairo_t* cr, const PixelRect& rect, double opacity) {
  const SavedState saved(cr);
  cairo_rectangle(cr, rect.x, rect.y, rect.width, rect.height);
  if (opacity >= 1) {
    cairo_fill(cr);
    return;
  }
  cairo_clip(cr);
  cairo_paint_with_alpha(cr, opacity);
}

}  // namespace

std::size_t OutlineMasks::TileHash::operator()(const TileKey& key) const {
  std::size_t hash = hashWith(0, key.width);
  hash = hashWith(hash, key.height);
  hash = hashWith(hash, key.radius);
  return hashWith(hash, key.lineWidth);
}

Coverage OutlineMasks::makeTile(const TileKey& key) {
  const SurfaceHandle surface = makeCoverageSurface(key.width, key.height);
  const CairoHandle cr(cairo_create(surface.get()));
  const Outline outline{0,
                        0,
                        static_cast<double>(key.width),
                        static_cast<double>(key.height),
                        key.radius,
                        key.continuous};
  addPath(cr.get(), insetBy(outline, key.lineWidth / 2));
  cairo_set_line_width(cr.get(), key.lineWidth);
  key.lineWidth > 0 ? cairo_stroke(cr.get()) : cairo_fill(cr.get());
  return coverageOf(surface);
}

const Coverage& OutlineMasks::tile(const Outline& outline, double lineWidth) {
  const int margin =
      static_cast<int>(std::ceil(cornerReach(outline.radius, outline.continuous) + lineWidth)) + 1;
  const TileKey key{std::min(static_cast<int>(outline.width), 2 * margin + 1),
                    std::min(static_cast<int>(outline.height), 2 * margin + 1), outline.radius,
                    outline.continuous, lineWidth};
  if (const Coverage* known = tiles_.find(key)) return *known;
  Coverage made;
  if (std::max(key.width, key.height) <= largestTile) made = makeTile(key);
  const std::size_t cost = 128 + made.values.size();
  return tiles_.insert(key, std::move(made), cost);
}

void OutlineMasks::fill(cairo_t* cr, const Outline& outline, const PixelRect& area,
                        double opacity) {
  if (isEmpty(outline)) return;
  // In the steps that masks have, so that the seam between the two ways of drawing is not seen.
  const auto steps = static_cast<std::uint8_t>(std::lround(std::clamp(opacity, 0.0, 1.0) * 255));
  const PixelRect inside = interiorOf(outline);
  const PixelRect inner = intersectionOf(inside, area);
  if (!inner.isEmpty()) fillRect(cr, inner, steps / 255.0);
  if (contains(inside, area)) return;
  const Coverage& corners = tile(outline, 0);
  if (!corners.values.empty())
    StretchedMask{corners, placeOf(outline)}.draw(cr, inside, area, steps);
}

void OutlineMasks::stroke(cairo_t* cr, const Outline& outline, double lineWidth,
                          const PixelRect& area) {
  const Outline hole = insetBy(outline, lineWidth);
  if (isEmpty(hole)) {
    fill(cr, outline, area);
    return;
  }
  const PixelRect untouched = interiorOf(hole);
  if (contains(untouched, area)) return;
  const Coverage& corners = tile(outline, lineWidth);
  if (!corners.values.empty()) StretchedMask{corners, placeOf(outline)}.draw(cr, untouched, area);
}

}  // namespace orvane::host
