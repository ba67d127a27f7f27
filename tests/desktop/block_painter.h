#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <variant>
#include <vector>

#include "view/painter.h"

namespace orvane::desktop {

// A painter whose pictures a test can read back: a fill is a plain rectangle of its colour, and of
// a text of cells each digit is a rectangle of the grey that blockShade() gives it. It draws
// exactly the pixels it is asked for.
class BlockPainter final : public Painter {
 public:
  // 0…255, far enough apart to be told from one another in a screenshot.
  static constexpr int blockShade(char digit) { return 20 + 20 * (digit - '0'); }

  void paint(const DisplayList& list, const PaintTarget& target,
             const std::vector<PixelRect>& damage) override {
    for (const auto& rect : damage) {
      fill(target, rect, rect, Color::clear());
      for (const auto& item : list) paintItem(item, target, rect);
    }
  }

 private:
  static void paintItem(const DisplayItem& item, const PaintTarget& target, const PixelRect& clip) {
    if (const auto* shape = std::get_if<FillItem>(&item.content)) {
      const auto* color = std::get_if<Color>(&shape->fill);
      if (color) fill(target, pixelsCovering(item.frame, target.scale), clip, *color);
    }
    const auto* text = std::get_if<TextItem>(&item.content);
    if (!text) return;
    double x = item.frame.x;
    for (std::size_t i = 0; i < text->cells.size() && i < text->text.size(); ++i) {
      const char character = text->text[i];
      const Rect cell{x, item.frame.y, text->cells[i], item.frame.height};
      if (character >= '0' && character <= '9') {
        const double shade = blockShade(character) / 255.0;
        fill(target, pixelsCovering(cell, target.scale), clip, Color::srgb(shade, shade, shade));
      }
      x += text->cells[i];
    }
  }

  static void fill(const PaintTarget& target, const PixelRect& rect, const PixelRect& clip,
                   Color color) {
    const SRGB c = color.resolved();
    const auto byte = [&](double part) {
      return static_cast<std::uint32_t>(std::lround(part * c.opacity * 255));
    };
    const std::uint32_t pixel =
        byte(1) << 24U | byte(c.red) << 16U | byte(c.green) << 8U | byte(c.blue);
    const auto& pixels = target.pixels;
    const int left = std::max({rect.x, clip.x, target.origin.x}) - target.origin.x;
    const int top = std::max({rect.y, clip.y, target.origin.y}) - target.origin.y;
    const int right =
        std::min({rect.x + rect.width, clip.x + clip.width, target.origin.x + pixels.width}) -
        target.origin.x;
    const int bottom =
        std::min({rect.y + rect.height, clip.y + clip.height, target.origin.y + pixels.height}) -
        target.origin.y;
    for (int y = top; y < bottom; ++y) {
      auto* row = reinterpret_cast<std::uint32_t*>(pixels.data + y * pixels.stride);
      for (int x = left; x < right; ++x) row[x] = pixel;
    }
  }
};

}  // namespace orvane::desktop
