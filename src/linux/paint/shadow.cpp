#include "linux/paint/shadow.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace orvane::host {

namespace {

Coverage coverageOf(const Outline& outline, int width, int height) {
  const SurfaceHandle surface = makeCoverageSurface(width, height);
  const CairoHandle cr(cairo_create(surface.get()));
  addPath(cr.get(), outline);
  cairo_fill(cr.get());
  return coverageOf(surface);
}

std::uint8_t outside(std::uint8_t shadow, std::uint8_t shape) {
  return static_cast<std::uint8_t>((shadow * (255 - shape) + 127) / 255);
}

// Beyond these, in pixels, it is no longer a shadow, nor its tile small.
constexpr int largestBlurRadius = 256;
constexpr int farthestOffset = 512;
constexpr int largestTile = 4096;

}  // namespace

std::size_t ShadowDrawing::TileHash::operator()(const TileKey& key) const {
  std::size_t hash = hashWith(0, key.width);
  hash = hashWith(hash, key.height);
  hash = hashWith(hash, key.cornerRadius);
  hash = hashWith(hash, key.blurRadius);
  hash = hashWith(hash, key.offsetX);
  return hashWith(hash, key.offsetY);
}

ShadowDrawing::TileKey ShadowDrawing::keyFor(const Outline& outline, const ShadowItem& shadow,
                                             double scale) {
  TileKey key;
  key.cornerRadius = outline.radius;
  key.continuous = outline.continuous;
  key.blurRadius = std::clamp(toPixels(shadow.radius, scale), 0, largestBlurRadius);
  key.offsetX = std::clamp(toPixels(shadow.offset.x, scale), -farthestOffset, farthestOffset);
  key.offsetY = std::clamp(toPixels(shadow.offset.y, scale), -farthestOffset, farthestOffset);
  const int corner = static_cast<int>(std::ceil(cornerReach(outline.radius, outline.continuous)));
  const int marginX = corner + key.blurRadius + std::abs(key.offsetX) + 1;
  const int marginY = corner + key.blurRadius + std::abs(key.offsetY) + 1;
  key.width = std::min(static_cast<int>(outline.width), 2 * marginX + 1);
  key.height = std::min(static_cast<int>(outline.height), 2 * marginY + 1);
  return key;
}

Coverage ShadowDrawing::makeTile(const TileKey& key) {
  const int r = key.blurRadius;
  const Outline shape{
      static_cast<double>(r),          static_cast<double>(r), static_cast<double>(key.width),
      static_cast<double>(key.height), key.cornerRadius,       key.continuous};
  Coverage shadow = coverageOf(shape, key.width + 2 * r, key.height + 2 * r);
  blur(shadow, r);
  Outline caster = shape;
  caster.x -= key.offsetX;
  caster.y -= key.offsetY;
  const Coverage hidden = coverageOf(caster, shadow.width, shadow.height);
  std::ranges::transform(shadow.values, hidden.values, shadow.values.begin(), outside);
  return shadow;
}

const Coverage& ShadowDrawing::tile(const TileKey& key) {
  if (const Coverage* known = tiles_.find(key)) return *known;
  Coverage made = makeTile(key);
  const std::size_t cost = made.values.size();
  return tiles_.insert(key, std::move(made), cost);
}

void ShadowDrawing::draw(cairo_t* cr, const ShadowItem& shadow, const Rect& frame, double scale,
                         const PixelRect& area) {
  const Outline outline = outlineOf(shadow.shape, frame, scale);
  const PixelRect hole = interiorOf(outline);
  if (isEmpty(outline) || contains(hole, area)) return;
  const TileKey key = keyFor(outline, shadow, scale);
  if (std::max(key.width, key.height) > largestTile) return;
  const PixelRect shifted{static_cast<int>(outline.x) + key.offsetX,
                          static_cast<int>(outline.y) + key.offsetY,
                          static_cast<int>(outline.width), static_cast<int>(outline.height)};
  const PixelRect full = grownBy(shifted, key.blurRadius);
  const Coverage& shade = tile(key);
  if (!shade.values.empty()) StretchedMask{shade, full}.draw(cr, hole, area);
}

}  // namespace orvane::host
