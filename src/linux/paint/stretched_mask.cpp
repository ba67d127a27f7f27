#include "linux/paint/stretched_mask.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvane::host {

namespace {

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

std::uint8_t thinned(std::uint8_t value, std::uint8_t opacity) {
  return static_cast<std::uint8_t>((value * opacity + 127) / 255);
}

// What surrounds `hole` within `full`, in four pieces.
std::array<PixelRect, 4> around(const PixelRect& full, const PixelRect& hole) {
  const PixelRect inner = intersectionOf(full, hole);
  if (inner.isEmpty()) return {full};
  const int right = static_cast<int>(rightOf(inner));
  const int bottom = static_cast<int>(bottomOf(inner));
  return {PixelRect{full.x, full.y, full.width, inner.y - full.y},
          PixelRect{full.x, bottom, full.width, static_cast<int>(bottomOf(full)) - bottom},
          PixelRect{full.x, inner.y, inner.x - full.x, inner.height},
          PixelRect{right, inner.y, static_cast<int>(rightOf(full)) - right, inner.height}};
}

}  // namespace

SurfaceHandle StretchedMask::part(const PixelRect& area, std::uint8_t opacity) const {
  SurfaceHandle surface = makeCoverageSurface(area.width, area.height);
  unsigned char* rows = cairo_image_surface_get_data(surface.get());
  if (!rows) return surface;
  const int stride = cairo_image_surface_get_stride(surface.get());
  const Stretch across{tile.width, full.width};
  const Stretch down{tile.height, full.height};
  for (int y = 0; y < area.height; ++y) {
    const int tileRow = down.at(area.y - full.y + y);
    const std::uint8_t* from = tile.values.data() + std::ptrdiff_t{tileRow} * tile.width;
    unsigned char* to = rows + std::ptrdiff_t{y} * stride;
    for (int x = 0; x < area.width; ++x)
      to[x] = thinned(from[across.at(area.x - full.x + x)], opacity);
  }
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

void StretchedMask::draw(cairo_t* cr, const PixelRect& hole, const PixelRect& area,
                         std::uint8_t opacity) const {
  for (const PixelRect& piece : around(full, hole)) {
    const PixelRect place = intersectionOf(piece, area);
    if (place.isEmpty()) continue;
    const SurfaceHandle mask = part(place, opacity);
    cairo_mask_surface(cr, mask.get(), place.x, place.y);
  }
}

SurfaceHandle makeCoverageSurface(int width, int height) {
  return SurfaceHandle(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
}

Coverage coverageOf(const SurfaceHandle& surface) {
  cairo_surface_flush(surface.get());
  Coverage coverage{cairo_image_surface_get_width(surface.get()),
                    cairo_image_surface_get_height(surface.get()),
                    {}};
  const unsigned char* rows = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; rows && y < coverage.height; ++y) {
    const unsigned char* row = rows + std::ptrdiff_t{y} * stride;
    coverage.values.insert(coverage.values.end(), row, row + coverage.width);
  }
  return coverage;
}

}  // namespace orvane::host
