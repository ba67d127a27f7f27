#pragma once

#include <vector>

#include "view/display_list.h"
#include "view/pixel_grid.h"

namespace orvane {

// Where a picture has glass: a host that can see what lies behind the window shows it blurred
// there.
struct GlassPane {
  Rect frame;  // in points
  Shape shape;
  friend bool operator==(const GlassPane&, const GlassPane&) = default;
};

// The panes that are to be seen: fills with a material that is not clear, at an opacity above 0,
// each in the shape of the clip around it or else its own.
[[nodiscard]] std::vector<GlassPane> glassPanes(const DisplayList& list);

// The pixels that lie wholly within the pane, from top to bottom, as rectangles that do not
// overlap.
[[nodiscard]] std::vector<PixelRect> pixelsWithin(const GlassPane& pane, double scale);

}  // namespace orvane
