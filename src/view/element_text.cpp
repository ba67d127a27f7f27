#include "view/elements.h"
#include "view/symbols.h"

namespace orvane::detail {

Measurement measureText(const TextNode& node, Proposal proposal, const TextMeasurer& measurer) {
  const auto extent = fitText(node, proposal.width, measurer).extent;
  return {extent.size, extent.firstBaseline};
}

TextItem placedText(const TextNode& node, Proposal proposal, const TextMeasurer& measurer) {
  auto fitted = fitText(node, proposal.width, measurer);
  return {node.content, fitted.style, node.color, fitted.extent.firstBaseline,
          std::move(fitted.cells)};
}

Measurement measureElement(const TextNode& node, Proposal proposal, LayoutPass& pass) {
  return measureText(node, proposal, pass.measurer());
}

void placeElement(const TextNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  pass.emit(frame, placedText(node, proposal, pass.measurer()));
}

Measurement measureElement(const SymbolNode& node, Proposal, LayoutPass&) {
  return {symbolSize(node.name, node.font), symbolBaseline(node.font)};
}

void placeElement(const SymbolNode& node, const Rect& frame, Proposal, LayoutPass& pass) {
  pass.emit(frame, SymbolItem{node.name, node.font, node.color});
}

}  // namespace orvane::detail
