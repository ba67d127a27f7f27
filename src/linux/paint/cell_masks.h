#pragma once

#include <cstddef>
#include <string>

#include "linux/paint/bounded_cache.h"
#include "linux/paint/handles.h"
#include "linux/paint/line_mask.h"
#include "linux/paint/pixel_geometry.h"
#include "linux/paint/typesetter.h"
#include "view/display_list.h"

namespace orvane::host {

// Draws texts whose characters stand in cells, from prepared coverage: a digit looks the same in
// whichever cell it stands, and drawing it again costs a copy.
class CellDrawing {
 public:
  explicit CellDrawing(Typesetter& typesetter) : typesetter_(typesetter) {}

  // Draws with the current source those characters whose cells meet `area`.
  void draw(cairo_t* cr, const TextItem& text, const Rect& frame, double scale,
            const PixelRect& area);

 private:
  struct MaskKey {
    std::string character;
    Font font;
    double cell = 0;  // the advance, in points
    double scale = 1;
    friend bool operator==(const MaskKey&, const MaskKey&) = default;
  };
  struct MaskHash {
    std::size_t operator()(const MaskKey& key) const;
  };

  // Coverage around a cell's start on the baseline.
  LineMask makeMask(const MaskKey& key);
  const LineMask& mask(const MaskKey& key);
  void drawCell(cairo_t* cr, const MaskKey& key, const Rect& cell, double baseline,
                const PixelRect& area);

  Typesetter& typesetter_;
  BoundedCache<MaskKey, LineMask, MaskHash> masks_{384 * 1024};
};

}  // namespace orvane::host
