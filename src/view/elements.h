#pragma once

#include "view/layout_pass.h"
#include "view/view_node.h"

// Each element's two steps: what it answers to a proposal, and how it fills the frame it gets.
namespace orvane::detail {

// The two steps of a text, which has no part in the pass.
Measurement measureText(const TextNode& node, Proposal proposal, const TextMeasurer& measurer);
TextItem placedText(const TextNode& node, Proposal proposal, const TextMeasurer& measurer);

Measurement measureElement(const EmptyNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const TextNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const SymbolNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const SpacerNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const FillNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const StrokeNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const VStackNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const HStackNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const ZStackNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const PaddingNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const FixedFrameNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const FlexibleFrameNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const BackgroundNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const OverlayNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const OpacityNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const ClipNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const ShadowNode& node, Proposal proposal, LayoutPass& pass);
Measurement measureElement(const NamedNode& node, Proposal proposal, LayoutPass& pass);

void placeElement(const EmptyNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const TextNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const SymbolNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const SpacerNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const FillNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const StrokeNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const VStackNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const HStackNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const ZStackNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const PaddingNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const FixedFrameNode& node, const Rect& frame, Proposal proposal,
                  LayoutPass& pass);
void placeElement(const FlexibleFrameNode& node, const Rect& frame, Proposal proposal,
                  LayoutPass& pass);
void placeElement(const BackgroundNode& node, const Rect& frame, Proposal proposal,
                  LayoutPass& pass);
void placeElement(const OverlayNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const OpacityNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const ClipNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const ShadowNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);
void placeElement(const NamedNode& node, const Rect& frame, Proposal proposal, LayoutPass& pass);

}  // namespace orvane::detail
