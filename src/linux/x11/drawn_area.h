#pragma once

#include "foundation/date.h"
#include "view/pixel_grid.h"

namespace orvane::host::x11 {

// How large a window is kept while what is drawn changes, in pixels from its screen's corner: it
// grows at once and shrinks only when it was too large for a while, so that a text that changes its
// length does not cost a new buffer each time.
class DrawnArea {
 public:
  static constexpr TimeInterval patience = 10;
  // Edges lie on multiples of this many pixels, except where the screen ends.
  static constexpr int step = 16;

  // `needed` is not empty and lies within `screen`. Answers whether the area changed.
  bool update(const PixelRect& needed, const PixelRect& screen, Date now);
  [[nodiscard]] const PixelRect& area() const { return area_; }
  void reset() { *this = DrawnArea(); }

 private:
  PixelRect area_;
  PixelRect recentlyNeeded_;  // all that was needed since `tooLargeSince_`
  Date tooLargeSince_;
};

}  // namespace orvane::host::x11
