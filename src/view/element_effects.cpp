#include "view/elements.h"

namespace orvane::detail {

Measurement measureElement(const OpacityNode& node, Proposal proposal, LayoutPass& pass) {
  return pass.measure(node.child, proposal);
}

void placeElement(const OpacityNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  if (node.opacity >= 1) {
    pass.place(node.child, frame, proposal);
  } else {
    pass.emitGroup(frame, node.opacity, std::nullopt, node.child, proposal);
  }
}

Measurement measureElement(const ClipNode& node, Proposal proposal, LayoutPass& pass) {
  return pass.measure(node.child, proposal);
}

// A clip of something translucent is one group rather than two, which halves the painter's work.
void placeElement(const ClipNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  const auto* translucent = node.child.node().as<OpacityNode>();
  if (translucent) {
    pass.emitGroup(frame, translucent->opacity, node.shape, translucent->child, proposal);
  } else {
    pass.emitGroup(frame, 1, node.shape, node.child, proposal);
  }
}

Measurement measureElement(const ShadowNode& node, Proposal proposal, LayoutPass& pass) {
  return pass.measure(node.child, proposal);
}

void placeElement(const ShadowNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  pass.emit(frame, ShadowItem{node.shape, node.color, node.radius, node.offset});
  pass.place(node.child, frame, proposal);
}

Measurement measureElement(const NamedNode& node, Proposal proposal, LayoutPass& pass) {
  return pass.measure(node.child, proposal);
}

void placeElement(const NamedNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  pass.name(node.name, frame);
  pass.place(node.child, frame, proposal);
}

}  // namespace orvane::detail
