#pragma once

#include <vector>

#include "view/pixel_grid.h"

namespace orvane::host::wayland {

// The pixels of a buffer that are not yet what they should be, as a short list of rectangles.
class MissingPixels {
 public:
  void add(const PixelRect& rect);
  void add(const std::vector<PixelRect>& rects);
  [[nodiscard]] const std::vector<PixelRect>& rects() const { return rects_; }
  void clear() { rects_.clear(); }

 private:
  std::vector<PixelRect> rects_;
};

}  // namespace orvane::host::wayland
