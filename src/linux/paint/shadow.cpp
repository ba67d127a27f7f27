#include "linux/paint/shadow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace orvane::host {

namespace {

SurfaceHandle coverageSurface(int width, int height) {
  return SurfaceHandle(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
}

Coverage coverageOf(const Outline& outline, int width, int height) {
  const SurfaceHandle surface = coverageSurface(width, height);
  const CairoHandle cr(cairo_create(surface.get()));
  addPath(cr.get(), outline);
  cairo_fill(cr.get());
  cairo_surface_flush(surface.get());
  Coverage coverage{width, height, std::vector<std::uint8_t>(std::size_t(width) * height)};
  const unsigned char* rows = cairo_image_surface_get_data(surface.get());
  if (!rows) return coverage;
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < height; ++y)
    std::memcpy(coverage.values.data() + std::size_t(y) * width, rows + std::size_t(y) * stride,
                width);
  return coverage;
}

std::uint8_t outside(std::uint8_t shadow, std::uint8_t shape) {
  return static_cast<std::uint8_t>((shadow * (255 - shape) + 127) / 255);
}

// Which of the tile's columns (or rows) stands at a place along a longer edge.
struct Stretch {
  int tileLength;
  int fullLength;

  [[nodiscard]] int at(int place) const {
    const int middle = tileLength / 2;
    if (place < middle) return place;
    return std::max(middle, place - (fullLength - tileLength));
  }
};

// The part `area` of the tile stretched to `full`, as a mask.
SurfaceHandle stretched(const Coverage& tile, const PixelRect& full, const PixelRect& area) {
  SurfaceHandle surface = coverageSurface(area.width, area.height);
  unsigned char* rows = cairo_image_surface_get_data(surface.get());
  if (!rows) return surface;
  const int stride = cairo_image_surface_get_stride(surface.get());
  const Stretch across{tile.width, full.width};
  const Stretch down{tile.height, full.height};
  for (int y = 0; y < area.height; ++y) {
    const int tileRow = down.at(area.y - full.y + y);
    const std::uint8_t* from = tile.values.data() + std::size_t(tileRow) * tile.width;
    unsigned char* to = rows + std::size_t(y) * stride;
    for (int x = 0; x < area.width; ++x) to[x] = from[across.at(area.x - full.x + x)];
  }
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

// What surrounds `hole` within `full`, in four pieces.
std::array<PixelRect, 4> around(const PixelRect& full, const PixelRect& hole) {
  const PixelRect inner = meeting(full, hole);
  if (inner.isEmpty()) return {full};
  const int right = static_cast<int>(rightOf(inner));
  const int bottom = static_cast<int>(bottomOf(inner));
  return {PixelRect{full.x, full.y, full.width, inner.y - full.y},
          PixelRect{full.x, bottom, full.width, static_cast<int>(bottomOf(full)) - bottom},
          PixelRect{full.x, inner.y, inner.x - full.x, inner.height},
          PixelRect{right, inner.y, static_cast<int>(rightOf(full)) - right, inner.height}};
}

// Beyond this a blur is no longer a shadow, and its tile no longer small.
constexpr int largestBlurRadius = 256;

}  // namespace

std::size_t ShadowDrawing::TileHash::operator()(const TileKey& key) const {
  std::size_t hash = hashWith(0, key.width);
  hash = hashWith(hash, key.height);
  hash = hashWith(hash, key.cornerRadius);
  hash = hashWith(hash, key.blurRadius);
  return hashWith(hash, key.offsetX * 1024 + key.offsetY);
}

ShadowDrawing::TileKey ShadowDrawing::keyFor(const Outline& outline, const ShadowItem& shadow,
                                             double scale) {
  TileKey key;
  key.cornerRadius = outline.radius;
  key.continuous = outline.continuous;
  key.blurRadius = std::clamp(toPixels(shadow.radius, scale), 0, largestBlurRadius);
  key.offsetX = toPixels(shadow.offset.x, scale);
  key.offsetY = toPixels(shadow.offset.y, scale);
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
  const PixelRect shifted{static_cast<int>(outline.x) + key.offsetX,
                          static_cast<int>(outline.y) + key.offsetY,
                          static_cast<int>(outline.width), static_cast<int>(outline.height)};
  const PixelRect full = grownBy(shifted, key.blurRadius);
  for (const PixelRect& piece : around(full, hole)) {
    const PixelRect part = meeting(piece, area);
    if (part.isEmpty()) continue;
    const SurfaceHandle mask = stretched(tile(key), full, part);
    cairo_mask_surface(cr, mask.get(), part.x, part.y);
  }
}

}  // namespace orvane::host
