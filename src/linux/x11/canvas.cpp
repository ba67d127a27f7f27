#include "linux/x11/canvas.h"

#include <cstdint>

#include "view/pixel_grid.h"

namespace orvane::host::x11 {

namespace {

// More than a tick paints, in pixels.
constexpr std::int64_t largePaint = 128 * 1024;

}  // namespace

void Canvas::begin(const Extent& extent) {
  extent_ = extent;
  // The old ones go first: two large buffers at a time are more than is needed.
  drop();
  pixels_ = std::make_unique<SharedPixels>(connection_, extent.area.width, extent.area.height);
  if (!extent.isOpaque) return;
  backdrop_ = std::make_unique<SharedPixels>(connection_, extent.area.width, extent.area.height);
  fetchBackdrop();
}

void Canvas::fetchBackdrop() {
  if (!backdrop_) return;
  rootPicture_.fill(*backdrop_,
                    {extent_.screen.x + extent_.area.x, extent_.screen.y + extent_.area.y});
  backdrop_->letPagesGo();
}

void Canvas::drop() {
  pixels_.reset();
  backdrop_.reset();
}

std::vector<PixelRect> Canvas::paint(const DisplayList& list, double scale,
                                     const std::vector<PixelRect>& parts) {
  std::vector<PixelRect> damage;
  for (const auto& part : parts) {
    const auto within = intersectionOf(part, extent_.area);
    if (!within.isEmpty()) damage.push_back(within);
  }
  if (damage.empty()) return damage;
  PaintTarget target;
  target.pixels = pixels_->buffer();
  target.scale = scale;
  target.origin = {extent_.area.x, extent_.area.y};
  if (backdrop_) target.backdrop = &backdrop_->buffer();
  painter_.paint(list, target, damage);
  if (areaOf(damage) >= largePaint) {
    pixels_->letPagesGo();
    if (backdrop_) backdrop_->letPagesGo();
  }
  for (auto& part : damage) {
    part.x -= extent_.area.x;
    part.y -= extent_.area.y;
  }
  return damage;
}

}  // namespace orvane::host::x11
