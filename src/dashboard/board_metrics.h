#pragma once

#include "view/geometry.h"

namespace orvane {

struct ColumnWidths {
  double left = 0;
  double right = 0;
  friend bool operator==(const ColumnWidths&, const ColumnWidths&) = default;
};

// A part of the window's width each, within bounds, whether both fit or not.
[[nodiscard]] ColumnWidths columnWidths(double windowWidth);

// From the window's edges to the board.
[[nodiscard]] EdgeInsets boardPadding(Size window);

// Between the columns, and between the cards of one.
inline constexpr double cardSpacing = 16;
// Around the board, in focus mode.
inline constexpr double focusInset = 10;

}  // namespace orvane
