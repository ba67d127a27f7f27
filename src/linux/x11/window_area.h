#pragma once

#include "view/pixel_grid.h"

namespace orvane::host::x11 {

// Edges of windows lie on multiples of this many pixels, except where the screen ends.
inline constexpr int areaStep = 16;

// The part of the screen that a window takes to show what is needed, which lies on the screen.
[[nodiscard]] PixelRect windowAreaFor(const PixelRect& needed, const PixelRect& screen);

}  // namespace orvane::host::x11
