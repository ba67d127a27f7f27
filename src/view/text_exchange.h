#pragma once

#include <optional>
#include <vector>

#include "view/geometry.h"
#include "view/layout_pass.h"

namespace orvane::detail {

// Most ticks change a digit or two: texts that take just the space of those before them, so that
// nothing else moves. This brings the layout of `before`, which was the last that the memory saw,
// up to `fresh` when that is all that differs, and answers what damage() would of the two layouts.
// Nothing where more differs, or where it cannot be told cheaply: then a pass is needed, and both
// are as they were.
std::optional<std::vector<Rect>> exchangeTexts(LayoutMemory& memory, Layout& layout,
                                               const View& before, const View& fresh,
                                               const TextMeasurer& measurer);

}  // namespace orvane::detail
