#include "dashboard/board_metrics.h"

#include <algorithm>

namespace orvane {

ColumnWidths columnWidths(double windowWidth) {
  return {std::min(std::max(windowWidth * 0.28, 315.0), 420.0),
          std::min(std::max(windowWidth * 0.38, 360.0), 520.0)};
}

EdgeInsets boardPadding(Size window) {
  return {.top = window.height >= 1000 ? 64.0 : 42.0,
          .leading = window.width >= 1600 ? 72.0 : 36.0,
          .bottom = 28,
          .trailing = 28};
}

}  // namespace orvane
