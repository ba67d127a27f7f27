#pragma once

#include <cstddef>
#include <string>

#include "linux/paint/bounded_cache.h"
#include "linux/paint/handles.h"
#include "linux/paint/typesetter.h"
#include "view/display_list.h"

namespace orvane::host {

// Keeps the coverage of each symbol: drawn as one, so that crossing lines of a translucent symbol
// do not show through one another.
class SymbolMasks {
 public:
  // Draws with the current source, in pixels of the plane, with the left edge on a pixel.
  void draw(cairo_t* cr, const SymbolItem& symbol, const Rect& frame, double scale);

 private:
  struct Key {
    std::string name;
    double size = 0;  // of the font
    FontWeight weight = FontWeight::regular;
    double scale = 1;
    int part = 0;  // of a pixel that the top lies below one
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };

  static SurfaceHandle make(const Key& key);
  cairo_surface_t* mask(const Key& key);

  BoundedCache<Key, SurfaceHandle, KeyHash> masks_{256 * 1024};
};

}  // namespace orvane::host
