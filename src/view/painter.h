#pragma once

#include <cstdint>
#include <vector>

#include "view/display_list.h"
#include "view/pixel_grid.h"

namespace orvane {

// Memory of a picture: premultiplied ARGB, 32 bits a pixel in the machine's byte order. Not owned.
struct PixelBuffer {
  std::uint8_t* data = nullptr;
  int width = 0;
  int height = 0;
  int stride = 0;  // bytes from row to row
};

// Where a display list is drawn: the buffer shows the list's plane, scaled, from `origin` on.
struct PaintTarget {
  PixelBuffer pixels;
  double scale = 1;   // pixels per point
  PixelPoint origin;  // of the buffer's first pixel on the scaled plane
  // What lies under the drawing; the same size as `pixels`, and opaque. Without one the drawing
  // lies on nothing and stays translucent.
  const PixelBuffer* backdrop = nullptr;
};

// Draws display lists. Keeps glyphs and shadows between calls. Main thread only.
class Painter {
 public:
  virtual ~Painter() = default;

  // Makes every pixel of `damage` what the list says, and touches no other pixel. The rectangles
  // are pixels of the scaled plane and may overlap or lie partly outside the buffer.
  virtual void paint(const DisplayList& list, const PaintTarget& target,
                     const std::vector<PixelRect>& damage) = 0;
};

}  // namespace orvane
