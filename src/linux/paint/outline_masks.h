#pragma once

#include <cstddef>

#include "linux/paint/bounded_cache.h"
#include "linux/paint/outline.h"
#include "linux/paint/stretched_mask.h"

namespace orvane::host {

// Draws outlines with the current source, limited to `area`, in pixels of the plane. What is kept
// is the coverage of the corners.
class OutlineMasks {
 public:
  void fill(cairo_t* cr, const Outline& outline, const PixelRect& area, double opacity = 1);
  // A line inside the outline. A line too wide for it fills it.
  void stroke(cairo_t* cr, const Outline& outline, double lineWidth, const PixelRect& area);

 private:
  // All lengths in pixels.
  struct TileKey {
    int width = 0;  // of the outline, shortened as far as its corners stay the same
    int height = 0;
    double radius = 0;
    bool continuous = false;
    double lineWidth = 0;  // 0: filled
    friend bool operator==(const TileKey&, const TileKey&) = default;
  };
  struct TileHash {
    std::size_t operator()(const TileKey& key) const;
  };

  static Coverage makeTile(const TileKey& key);
  const Coverage& tile(const Outline& outline, double lineWidth);

  BoundedCache<TileKey, Coverage, TileHash> tiles_{256 * 1024};
};

}  // namespace orvane::host
