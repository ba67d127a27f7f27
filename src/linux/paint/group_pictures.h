#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "linux/paint/bounded_cache.h"
#include "linux/paint/handles.h"
#include "linux/paint/pixel_geometry.h"
#include "view/display_list.h"

namespace orvane::host {

// Keeps what lies under the digits that tick: small pieces of groups that hold nothing but fills,
// which is the glass of a card, before their clip and opacity.
class GroupPictures {
 public:
  // The part of a group that lies in an area of the plane.
  struct Piece {
    std::vector<DisplayItem> items;
    double scale = 1;
    PixelRect area;
    friend bool operator==(const Piece&, const Piece&) = default;
  };

  [[nodiscard]] static bool keeps(std::span<const DisplayItem> items, const PixelRect& area);

  // The picture of a piece that is kept. `draw` is given a context with the plane's pixels as its
  // units where it was not known. Valid until the next call.
  template <class Draw>
  cairo_surface_t* picture(const Piece& piece, Draw draw) {
    if (const SurfaceHandle* known = pictures_.find(piece)) return known->get();
    SurfaceHandle surface = emptyPicture(piece.area);
    const CairoHandle cr(cairo_create(surface.get()));
    cairo_translate(cr.get(), -piece.area.x, -piece.area.y);
    draw(cr.get());
    const std::size_t cost = costOf(piece.area);
    return pictures_.insert(piece, std::move(surface), cost).get();
  }

 private:
  struct PieceHash {
    std::size_t operator()(const Piece& piece) const;
  };

  static SurfaceHandle emptyPicture(const PixelRect& area);
  static std::size_t costOf(const PixelRect& area);

  BoundedCache<Piece, SurfaceHandle, PieceHash> pictures_{384 * 1024};
};

}  // namespace orvane::host
