#pragma once

#include <cstddef>

#include "linux/paint/blur.h"
#include "linux/paint/bounded_cache.h"
#include "linux/paint/outline.h"
#include "linux/paint/stretched_mask.h"
#include "view/display_list.h"

namespace orvane::host {

// Draws blurred shadows. What is kept is a tile for each kind of outline, no larger than its
// corners and the blur need: the edges between them repeat the tile's middle.
class ShadowDrawing {
 public:
  // Draws with the current source, limited to `area`, in pixels of the plane.
  void draw(cairo_t* cr, const ShadowItem& shadow, const Rect& frame, double scale,
            const PixelRect& area);

 private:
  // All lengths in pixels.
  struct TileKey {
    int width = 0;  // of the outline, shortened as far as the tile stays the same
    int height = 0;
    double cornerRadius = 0;
    bool continuous = false;
    int blurRadius = 0;
    int offsetX = 0;
    int offsetY = 0;
    friend bool operator==(const TileKey&, const TileKey&) = default;
  };
  struct TileHash {
    std::size_t operator()(const TileKey& key) const;
  };

  static TileKey keyFor(const Outline& outline, const ShadowItem& shadow, double scale);
  static Coverage makeTile(const TileKey& key);
  const Coverage& tile(const TileKey& key);

  BoundedCache<TileKey, Coverage, TileHash> tiles_{768 * 1024};
};

}  // namespace orvane::host
