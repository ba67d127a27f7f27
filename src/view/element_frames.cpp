#include <algorithm>

#include "view/alignment.h"
#include "view/elements.h"

namespace orvane::detail {
namespace {

Proposal inside(const EdgeInsets& insets, Proposal proposal) {
  return {std::max(proposal.width - insets.leading - insets.trailing, 0.0),
          std::max(proposal.height - insets.top - insets.bottom, 0.0)};
}

Proposal inside(const FixedFrameNode& node, Proposal proposal) {
  return {node.width.value_or(proposal.width), node.height.value_or(proposal.height)};
}

double bounded(double value, std::optional<double> min, std::optional<double> max) {
  if (max) value = std::min(value, *max);
  if (min) value = std::max(value, *min);
  return value;
}

Proposal inside(const View::FlexibleFrame& frame, Proposal proposal) {
  return {bounded(proposal.width, frame.minWidth, frame.maxWidth),
          bounded(proposal.height, frame.minHeight, frame.maxHeight)};
}

// A frame with an upper bound takes what it is offered up to there, one with a lower bound at
// least that; without bounds it is as long as its child.
double flexibleLength(double child, double offered, std::optional<double> min,
                      std::optional<double> max) {
  if (min) child = std::max(*min, std::min(child, offered));
  if (max) child = std::min(*max, std::max(child, offered));
  return child;
}

Measurement framed(const Measurement& child, Size frame, Alignment alignment) {
  Measurement result{frame, child.firstBaseline};
  if (result.firstBaseline) {
    *result.firstBaseline += offsetOf(alignment.vertical, child.size.height, frame.height);
  }
  return result;
}

}  // namespace

Measurement measureElement(const PaddingNode& node, Proposal proposal, LayoutPass& pass) {
  Measurement result = pass.measure(node.child, inside(node.insets, proposal));
  result.size.width += node.insets.leading + node.insets.trailing;
  result.size.height += node.insets.top + node.insets.bottom;
  if (result.firstBaseline) *result.firstBaseline += node.insets.top;
  return result;
}

void placeElement(const PaddingNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  const Proposal offered = inside(node.insets, proposal);
  const Size size = pass.measure(node.child, offered).size;
  pass.place(node.child,
             {frame.x + node.insets.leading, frame.y + node.insets.top, size.width, size.height},
             offered);
}

Measurement measureElement(const FixedFrameNode& node, Proposal proposal, LayoutPass& pass) {
  const Measurement child = pass.measure(node.child, inside(node, proposal));
  const Size size{node.width.value_or(child.size.width), node.height.value_or(child.size.height)};
  return framed(child, size, node.alignment);
}

void placeElement(const FixedFrameNode& node, const Rect& frame, Proposal proposal,
                  LayoutPass& pass) {
  const Proposal offered = inside(node, proposal);
  const Size size = pass.measure(node.child, offered).size;
  pass.place(node.child, aligned(node.alignment, size, frame), offered);
}

Measurement measureElement(const FlexibleFrameNode& node, Proposal proposal, LayoutPass& pass) {
  const auto& [minWidth, maxWidth, minHeight, maxHeight, alignment] = node.frame;
  const Proposal offered = inside(node.frame, proposal);
  const Measurement child = pass.measure(node.child, offered);
  const Size size{flexibleLength(child.size.width, offered.width, minWidth, maxWidth),
                  flexibleLength(child.size.height, offered.height, minHeight, maxHeight)};
  return framed(child, size, alignment);
}

void placeElement(const FlexibleFrameNode& node, const Rect& frame, Proposal proposal,
                  LayoutPass& pass) {
  const Proposal offered = inside(node.frame, proposal);
  const Size size = pass.measure(node.child, offered).size;
  pass.place(node.child, aligned(node.frame.alignment, size, frame), offered);
}

}  // namespace orvane::detail
