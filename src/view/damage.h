#pragma once

#include <vector>

#include "view/display_list.h"

namespace orvane {

// The rectangles in which the two lists may differ on screen, few and not overlapping much; empty
// where they look the same. Texts laid out in cells are compared cell by cell.
[[nodiscard]] std::vector<Rect> damage(const DisplayList& before, const DisplayList& after);

}  // namespace orvane
