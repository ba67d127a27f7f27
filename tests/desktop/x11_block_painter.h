#pragma once

#include <array>
#include <string>

#include "view/painter.h"

namespace orvane::desktop_test {

// Which of the seven strokes of a digit are lit: top, upper left, upper right, middle, lower left,
// lower right, bottom.
inline constexpr std::array<std::array<bool, 7>, 10> digitStrokes = {{
    {true, true, true, false, true, true, true},
    {false, false, true, false, false, true, false},
    {true, false, true, true, true, false, true},
    {true, false, true, true, false, true, true},
    {false, true, true, true, false, true, false},
    {true, true, false, true, false, true, true},
    {true, true, false, true, true, true, true},
    {true, false, true, false, false, true, false},
    {true, true, true, true, true, true, true},
    {true, true, true, true, false, true, true},
}};

// The seven strokes in a cell of a size, in the order above.
std::array<PixelRect, 7> strokesIn(const PixelRect& cell);

// Paints fills of one colour as rectangles and digits in cells as seven strokes, so that a picture
// of the screen can be read back without knowing any font.
class BlockPainter final : public Painter {
 public:
  void paint(const DisplayList& list, const PaintTarget& target,
             const std::vector<PixelRect>& damage) override;
};

}  // namespace orvane::desktop_test
