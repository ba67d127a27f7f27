#include "x11_block_painter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvane::desktop_test {

namespace {

PixelRect meet(const PixelRect& a, const PixelRect& b) {
  const int x = std::max(a.x, b.x);
  const int y = std::max(a.y, b.y);
  return {x, y, std::min(a.x + a.width, b.x + b.width) - x,
          std::min(a.y + a.height, b.y + b.height) - y};
}

std::uint32_t over(const SRGB& colour, std::uint32_t below) {
  const auto channel = [&](unsigned shift, double value) {
    const double under = (below >> shift & 0xffU) / 255.0;
    const double mixed = value * colour.opacity + under * (1 - colour.opacity);
    return static_cast<std::uint32_t>(std::lround(mixed * 255)) << shift;
  };
  return channel(24, 1) | channel(16, colour.red) | channel(8, colour.green) |
         channel(0, colour.blue);
}

std::uint32_t* pixelAt(const PixelBuffer& pixels, int x, int y) {
  return reinterpret_cast<std::uint32_t*>(pixels.data + std::ptrdiff_t{y} * pixels.stride) + x;
}

// Drawing within one rectangle of damage.
class Brush {
 public:
  Brush(const PaintTarget& target, const PixelRect& clip) : target_(target), clip_(clip) {}

  void clear() const {
    each(clip_, [&](std::uint32_t& pixel, int x, int y) {
      pixel = target_.backdrop != nullptr ? *pixelAt(*target_.backdrop, x, y) : 0;
    });
  }
  void fill(const PixelRect& rect, const SRGB& colour) const {
    each(meet(rect, clip_), [&](std::uint32_t& pixel, int, int) { pixel = over(colour, pixel); });
  }
  void draw(const DisplayItem& item) const {
    if (const auto* fillItem = std::get_if<FillItem>(&item.content)) {
      if (const auto* colour = std::get_if<Color>(&fillItem->fill)) {
        fill(pixelsCovering(item.frame, target_.scale), colour->resolved());
      }
    }
    if (const auto* text = std::get_if<TextItem>(&item.content)) drawDigits(item.frame, *text);
  }

 private:
  void drawDigits(const Rect& frame, const TextItem& text) const {
    double x = frame.x;
    for (std::size_t i = 0; i < text.cells.size(); x += text.cells[i++]) {
      const auto cell = pixelsCovering({x, frame.y, text.cells[i], frame.height}, target_.scale);
      const auto digit = static_cast<std::size_t>(text.text[i] - '0');
      if (digit > 9) continue;
      const auto strokes = strokesIn(cell);
      for (std::size_t s = 0; s < strokes.size(); ++s) {
        if (digitStrokes[digit][s]) fill(strokes[s], text.color.resolved());
      }
    }
  }
  template <class Change>
  void each(const PixelRect& plane, Change change) const {
    const PixelRect inBuffer =
        meet({plane.x - target_.origin.x, plane.y - target_.origin.y, plane.width, plane.height},
             {0, 0, target_.pixels.width, target_.pixels.height});
    for (int y = inBuffer.y; y < inBuffer.y + inBuffer.height; ++y) {
      for (int x = inBuffer.x; x < inBuffer.x + inBuffer.width; ++x) {
        change(*pixelAt(target_.pixels, x, y), x, y);
      }
    }
  }

  const PaintTarget& target_;
  PixelRect clip_;
};

}  // namespace

std::array<PixelRect, 7> strokesIn(const PixelRect& cell) {
  const int thick = std::max(2, cell.width / 6);
  const int left = cell.x + thick;
  const int width = cell.width - 2 * thick;
  const int right = left + width - thick;
  const int top = cell.y + thick;
  const int half = (cell.height - 3 * thick) / 2;
  const int middle = top + half;
  const int bottom = middle + half;
  return {{{left, top, width, thick},
           {left, top, thick, half},
           {right, top, thick, half},
           {left, middle, width, thick},
           {left, middle, thick, half},
           {right, middle, thick, half},
           {left, bottom, width, thick}}};
}

void BlockPainter::paint(const DisplayList& list, const PaintTarget& target,
                         const std::vector<PixelRect>& damage) {
  for (const auto& part : damage) {
    const Brush brush(target, part);
    brush.clear();
    for (const auto& item : list) brush.draw(item);
  }
}

}  // namespace orvane::desktop_test
