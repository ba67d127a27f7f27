#pragma once

#include <string>
#include <vector>

#include "view/display_list.h"
#include "view/geometry.h"
#include "view/text_measurer.h"
#include "view/view.h"

namespace orvane {

struct NamedFrame {
  std::string name;
  Rect frame;
  friend bool operator==(const NamedFrame&, const NamedFrame&) = default;
};

// A laid-out view: what to draw, and where the views that bear a name came to lie.
struct Layout {
  DisplayList list;
  std::vector<NamedFrame> frames;
  friend bool operator==(const Layout&, const Layout&) = default;
};

// Proposes `size` to the view and places it in the middle of a rectangle of that size at the
// origin. The list holds also what lies beyond the rectangle.
[[nodiscard]] Layout layout(const View& view, Size size, const TextMeasurer& measurer);

// A space of the default width between the children of a stack that names none.
inline constexpr double defaultStackSpacing = 8;

}  // namespace orvane
