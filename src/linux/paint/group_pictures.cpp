#include "linux/paint/group_pictures.h"

#include <algorithm>

namespace orvane::host {

namespace {

// Two digits of a countdown at scale 2. What is larger is not drawn often enough.
constexpr std::size_t largestPicture = 32 * 1024;  // pixels

std::size_t pixelsOf(const PixelRect& area) {
  return static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height);
}

}  // namespace

bool GroupPictures::keeps(std::span<const DisplayItem> items, const PixelRect& area) {
  return pixelsOf(area) <= largestPicture &&
         std::ranges::all_of(items, [](const DisplayItem& item) {
           return std::holds_alternative<FillItem>(item.content);
         });
}

std::size_t GroupPictures::PieceHash::operator()(const Piece& piece) const {
  std::size_t hash = hashWith(0, piece.scale);
  for (const int side : {piece.area.x, piece.area.y, piece.area.width, piece.area.height})
    hash = hashWith(hash, side);
  return hash;
}

SurfaceHandle GroupPictures::emptyPicture(const PixelRect& area) {
  return SurfaceHandle(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, area.width, area.height));
}

std::size_t GroupPictures::costOf(const PixelRect& area) { return 512 + 4 * pixelsOf(area); }

}  // namespace orvane::host
