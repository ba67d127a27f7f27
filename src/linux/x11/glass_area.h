#pragma once

#include <vector>

#include "view/display_list.h"
#include "view/pixel_grid.h"

namespace orvane::host::x11 {

// The parts of a window that covers `area` of the scaled plane behind which there is glass, in
// pixels from the window's corner.
std::vector<PixelRect> glassWithin(const PixelRect& area, const DisplayList& list, double scale);

}  // namespace orvane::host::x11
