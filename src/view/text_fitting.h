#pragma once

#include <vector>

#include "view/text_measurer.h"
#include "view/view_node.h"

namespace orvane::detail {

// How a text comes to stand in a width.
struct FittedText {
  TextStyle style;  // with the size as drawn
  TextExtent extent;
  std::vector<double> cells;  // not empty where the characters stand at fixed places
};

// Wraps the text at `width`; one with a minimum scale first shrinks, and is cut only where even
// the smallest size does not fit. Its height is never held against it: a text that is offered too
// little height sticks out rather than losing lines.
FittedText fitText(const TextNode& text, double width, const TextMeasurer& measurer);

}  // namespace orvane::detail
