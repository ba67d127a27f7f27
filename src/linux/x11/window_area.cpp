#include "linux/x11/window_area.h"

namespace orvane::host::x11 {

namespace {

int stepBelow(int value) { return value - (value % areaStep); }
int stepAbove(int value) { return stepBelow(value + areaStep - 1); }

}  // namespace

PixelRect windowAreaFor(const PixelRect& needed, const PixelRect& screen) {
  const int x = stepBelow(needed.x);
  const int y = stepBelow(needed.y);
  return intersectionOf(
      {x, y, stepAbove(needed.x + needed.width) - x, stepAbove(needed.y + needed.height) - y},
      screen);
}

}  // namespace orvane::host::x11
