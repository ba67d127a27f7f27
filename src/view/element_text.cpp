#include "view/elements.h"

namespace orvane::detail {
namespace {

// Symbols are drawn in a square a little higher than the letters beside them, and stand on the
// baseline with the room below it that letters like g have.
constexpr double symbolSide = 1.2;
constexpr double symbolBaseline = 0.96;

}  // namespace

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
  const double side = node.font.size * symbolSide;
  return {{side, side}, node.font.size * symbolBaseline};
}

void placeElement(const SymbolNode& node, const Rect& frame, Proposal, LayoutPass& pass) {
  pass.emit(frame, SymbolItem{node.name, node.font, node.color});
}

}  // namespace orvane::detail
