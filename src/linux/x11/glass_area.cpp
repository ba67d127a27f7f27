#include "linux/x11/glass_area.h"

#include "view/glass.h"

namespace orvane::host::x11 {

std::vector<PixelRect> glassWithin(const PixelRect& area, const DisplayList& list, double scale) {
  std::vector<PixelRect> parts;
  for (const auto& pane : glassPanes(list)) {
    for (const auto& pixels : pixelsWithin(pane, scale)) {
      const auto part = intersectionOf(pixels, area);
      if (part.isEmpty()) continue;
      parts.push_back({part.x - area.x, part.y - area.y, part.width, part.height});
    }
  }
  return parts;
}

}  // namespace orvane::host::x11
