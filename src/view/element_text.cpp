#include "view/elements.h"
#include "view/symbols.h"

namespace orvane::detail {
Measurement measureElement(const TextNode& node, Proposal proposal, LayoutPass& pass) {
  const auto extent = fitText(node, proposal.width, pass.measurer()).extent;
  return {extent.size, extent.firstBaseline};
}

void placeElement(const TextNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass) {
  auto fitted = fitText(node, proposal.width, pass.measurer());
  pass.emit(frame, TextItem{node.content, fitted.style, node.color, fitted.extent.firstBaseline,
                            std::move(fitted.cells)});
}

Measurement measureElement(const SymbolNode& node, Proposal, LayoutPass&) {
  return {symbolSize(node.name, node.font), symbolBaseline(node.font)};
}

void placeElement(const SymbolNode& node, const Rect& frame, Proposal, LayoutPass& pass) {
  pass.emit(frame, SymbolItem{node.name, node.font, node.color});
}

}  // namespace orvane::detail
