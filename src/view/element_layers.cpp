#include <algorithm>

#include "view/alignment.h"
#include "view/elements.h"

namespace orvane::detail {
namespace {

// In the middle of another view, offered that view's size and no more.
void placeOn(const Rect& frame, const View& decoration, LayoutPass& pass) {
  const Proposal offered{frame.width, frame.height};
  const Size size = pass.measure(decoration, offered).size;
  pass.place(decoration, aligned(Alignment::center(), size, frame), offered);
}

}  // namespace

Measurement measureElement(const ZStackNode& node, Proposal proposal, LayoutPass& pass) {
  Measurement result;
  for (const View& child : node.children) {
    const Size size = pass.measure(child, proposal).size;
    result.size.width = std::max(result.size.width, size.width);
    result.size.height = std::max(result.size.height, size.height);
  }
  for (const View& child : node.children) {
    const auto [size, baseline] = pass.measure(child, proposal);
    if (!baseline) continue;
    result.firstBaseline =
        *baseline + offsetOf(node.alignment.vertical, size.height, result.size.height);
    break;
  }
  return result;
}

void placeElement(const ZStackNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  for (const View& child : node.children) {
    const Size size = pass.measure(child, proposal).size;
    pass.place(child, aligned(node.alignment, size, frame), proposal);
  }
}

Measurement measureElement(const BackgroundNode& node, Proposal proposal, LayoutPass& pass) {
  return pass.measure(node.child, proposal);
}

void placeElement(const BackgroundNode& node, const Rect& frame, Proposal proposal,
                  LayoutPass& pass) {
  placeOn(frame, node.behind, pass);
  pass.place(node.child, frame, proposal);
}

Measurement measureElement(const OverlayNode& node, Proposal proposal, LayoutPass& pass) {
  return pass.measure(node.child, proposal);
}

void placeElement(const OverlayNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  pass.place(node.child, frame, proposal);
  placeOn(frame, node.inFront, pass);
}

}  // namespace orvane::detail
