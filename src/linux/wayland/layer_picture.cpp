#include "linux/wayland/layer_picture.h"

#include <cstdint>

namespace orvane::host::wayland {
namespace {

// More than a tick paints, in pixels.
constexpr std::int64_t largePaint = 128 * 1024;

}  // namespace

void LayerPicture::moveTo(const SurfaceArea& area, SurfaceScale scale) {
  const PixelRect part{scale.pixels(area.x), scale.pixels(area.y), scale.pixels(area.width),
                       scale.pixels(area.height)};
  if (part == part_ && scale == scale_) return;
  part_ = part;
  scale_ = scale;
  buffers_.resize({part.width, part.height});
  changed_.clear();
  changed_.add(PixelRect{0, 0, part.width, part.height});
}

void LayerPicture::change(const std::vector<Rect>& rects) {
  for (const auto& rect : rects) {
    PixelRect pixels = intersectionOf(pixelsCovering(rect, scale_.factor()), part_);
    pixels.x -= part_.x;
    pixels.y -= part_.y;
    changed_.add(pixels);
  }
}

ShmBuffer* LayerPicture::paint(const DisplayList& list) {
  ShmBuffer* buffer = buffers_.acquire();
  if (!buffer) return nullptr;
  buffers_.markChanged(changed_.rects());
  changed_.clear();
  paintInto(*buffer, list);
  buffer->giveToCompositor();
  return buffer;
}

void LayerPicture::paintInto(ShmBuffer& buffer, const DisplayList& list) {
  std::vector<PixelRect> onWindow = buffer.missing.rects();
  for (auto& rect : onWindow) {
    rect.x += part_.x;
    rect.y += part_.y;
  }
  buffer.missing.clear();
  const PaintTarget target{buffer.pixels(), scale_.factor(), {part_.x, part_.y}};
  painter_.paint(list, target, onWindow);
  if (areaOf(onWindow) >= largePaint) buffer.letPagesGo();
}

void LayerPicture::clear() {
  buffers_.clear();
  part_ = {};
  scale_ = {};
  changed_.clear();
}

}  // namespace orvane::host::wayland
