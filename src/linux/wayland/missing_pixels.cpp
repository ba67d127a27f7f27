#include "linux/wayland/missing_pixels.h"

#include <algorithm>

namespace orvane::host::wayland {
namespace {

// Beyond this many, one rectangle around them all is cheaper to keep than to tell apart.
constexpr std::size_t mostRects = 24;

bool holds(const PixelRect& outer, const PixelRect& inner) {
  return outer.x <= inner.x && outer.y <= inner.y &&
         outer.x + outer.width >= inner.x + inner.width &&
         outer.y + outer.height >= inner.y + inner.height;
}

}  // namespace

void MissingPixels::add(const PixelRect& rect) {
  if (rect.isEmpty()) return;
  if (std::any_of(rects_.begin(), rects_.end(), [&](const auto& r) { return holds(r, rect); })) {
    return;
  }
  std::erase_if(rects_, [&](const auto& r) { return holds(rect, r); });
  rects_.push_back(rect);
  if (rects_.size() <= mostRects) return;
  PixelRect all = rects_.front();
  for (const auto& r : rects_) all = unionOf(all, r);
  rects_.assign(1, all);
}

void MissingPixels::add(const std::vector<PixelRect>& rects) {
  for (const auto& rect : rects) add(rect);
}

}  // namespace orvane::host::wayland
