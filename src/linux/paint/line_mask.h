#pragma once

#include "linux/paint/handles.h"
#include "linux/paint/pixel_geometry.h"

namespace orvane::host {

// The coverage of a line of text. Pictures, such as emoji, are left out: they have colours.
struct LineMask {
  SurfaceHandle surface;  // null without ink
  PixelRect extents;      // around the pixel on the baseline from which `start` was counted
};

// The line as it is when it begins `start` points after a whole pixel.
[[nodiscard]] LineMask makeLineMask(PangoLayoutLine* line, double start, double scale);

// Draws the pictures of a line that begins at the origin, in points.
void drawPictures(cairo_t* cr, PangoLayoutLine* line, double opacity);

}  // namespace orvane::host
