#include <algorithm>

#include "view/elements.h"

namespace orvane::detail {
namespace {

Measurement allOf(Proposal proposal) {
  return {{std::max(proposal.width, 0.0), std::max(proposal.height, 0.0)}, std::nullopt};
}

}  // namespace

Measurement measureElement(const EmptyNode&, Proposal, LayoutPass&) { return {}; }

void placeElement(const EmptyNode&, const Rect&, Proposal, LayoutPass&) {}

// Outside a stack a spacer stretches both ways; a stack looks only at the length along itself.
Measurement measureElement(const SpacerNode& node, Proposal proposal, LayoutPass&) {
  return {{std::max(proposal.width, node.minLength), std::max(proposal.height, node.minLength)},
          std::nullopt};
}

void placeElement(const SpacerNode&, const Rect&, Proposal, LayoutPass&) {}

Measurement measureElement(const FillNode&, Proposal proposal, LayoutPass&) {
  return allOf(proposal);
}

void placeElement(const FillNode& node, const Rect& frame, Proposal, LayoutPass& pass) {
  pass.emit(frame, FillItem{node.shape, node.fill});
}

Measurement measureElement(const StrokeNode&, Proposal proposal, LayoutPass&) {
  return allOf(proposal);
}

void placeElement(const StrokeNode& node, const Rect& frame, Proposal, LayoutPass& pass) {
  pass.emit(frame, StrokeItem{node.shape, node.lineWidth, node.color});
}

}  // namespace orvane::detail
