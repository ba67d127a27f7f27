#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "view/font.h"
#include "view/geometry.h"

namespace orvane {

// Our own drawings, known by name: "timer", "calendar", "checklist", "display",
// "arrow.triangle.2.circlepath", "calendar.badge.clock", "calendar.badge.exclamationmark",
// "paintpalette", "questionmark.folder", "checkmark.circle".
//
// Each is a set of paths on a grid that is `symbolGridHeight` units high, y downwards. Lines are
// stroked with round caps and joins in the one width that goes with the text beside them.

struct PathCommand {
  enum class Verb : std::uint8_t { move, line, curve, close };
  Verb verb = Verb::move;
  // The end point stands last among those that the verb uses: one of a move or a line; two
  // control points and the end of a cubic curve; none of a close.
  std::array<Point, 3> points;
};
using Path = std::vector<PathCommand>;

struct SymbolDrawing {
  double width = 0;           // of the grid, in units
  std::vector<Path> strokes;  // lines of symbolLineWidth()
  std::vector<Path> fills;    // painted areas, such as dots and arrow heads
};

inline constexpr double symbolGridHeight = 24;

// The paths of a symbol. A name that nobody knows gives a drawing of nominal size without ink.
[[nodiscard]] SymbolDrawing symbolDrawing(const std::string& name);

// The width of a symbol's lines in units of the grid.
[[nodiscard]] double symbolLineWidth(FontWeight weight);

// What a symbol takes, in points, beside text of this font.
[[nodiscard]] Size symbolSize(const std::string& name, const Font& font);

// The distance from a symbol's top to the baseline of the text that it goes with: symbols are
// centred on the height of a capital.
[[nodiscard]] double symbolBaseline(const Font& font);

// How much lower than its place the ink of a symbol is drawn: the letters of a text stand below the
// middle of their line, and a symbol that is centred beside them is to stand where they do.
[[nodiscard]] double symbolDrop(const Font& font);

}  // namespace orvane
