#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "view/shape.h"
#include "view/text_measurer.h"
#include "view/view.h"

// What a View holds. Only this folder looks inside; everyone else composes views.
namespace orvane::detail {

struct EmptyNode {
  friend bool operator==(const EmptyNode&, const EmptyNode&) = default;
};
struct TextNode {
  std::string content;
  TextStyle style;
  Color color = Color::white();
  double minimumScale = 1;
  friend bool operator==(const TextNode&, const TextNode&) = default;
};
struct SymbolNode {
  std::string name;
  Font font;
  Color color = Color::white();
  friend bool operator==(const SymbolNode&, const SymbolNode&) = default;
};
struct SpacerNode {
  double minLength = 0;
  friend bool operator==(const SpacerNode&, const SpacerNode&) = default;
};
struct FillNode {
  Shape shape;
  Fill fill;
  friend bool operator==(const FillNode&, const FillNode&) = default;
};
struct StrokeNode {
  Shape shape;
  Color color;
  double lineWidth = 1;
  friend bool operator==(const StrokeNode&, const StrokeNode&) = default;
};

struct VStackNode {
  HorizontalAlignment alignment;
  double spacing;
  std::vector<View> children;
  friend bool operator==(const VStackNode&, const VStackNode&) = default;
};
struct HStackNode {
  VerticalAlignment alignment;
  double spacing;
  std::vector<View> children;
  friend bool operator==(const HStackNode&, const HStackNode&) = default;
};
struct ZStackNode {
  Alignment alignment;
  std::vector<View> children;
  friend bool operator==(const ZStackNode&, const ZStackNode&) = default;
};

struct PaddingNode {
  EdgeInsets insets;
  View child;
  friend bool operator==(const PaddingNode&, const PaddingNode&) = default;
};
struct FixedFrameNode {
  std::optional<double> width;
  std::optional<double> height;
  Alignment alignment;
  View child;
  friend bool operator==(const FixedFrameNode&, const FixedFrameNode&) = default;
};
struct FlexibleFrameNode {
  View::FlexibleFrame frame;
  View child;
  friend bool operator==(const FlexibleFrameNode&, const FlexibleFrameNode&) = default;
};
struct BackgroundNode {
  View child;
  View behind;
  friend bool operator==(const BackgroundNode&, const BackgroundNode&) = default;
};
struct OverlayNode {
  View child;
  View inFront;
  friend bool operator==(const OverlayNode&, const OverlayNode&) = default;
};
struct OpacityNode {
  double opacity;
  View child;
  friend bool operator==(const OpacityNode&, const OpacityNode&) = default;
};
struct ClipNode {
  Shape shape;
  View child;
  friend bool operator==(const ClipNode&, const ClipNode&) = default;
};
struct ShadowNode {
  Shape shape;
  Color color;
  double radius;
  Point offset;
  View child;
  friend bool operator==(const ShadowNode&, const ShadowNode&) = default;
};
struct NamedNode {
  std::string name;
  View child;
  friend bool operator==(const NamedNode&, const NamedNode&) = default;
};

struct ViewNode {
  using Content =
      std::variant<EmptyNode, TextNode, SymbolNode, SpacerNode, FillNode, StrokeNode, VStackNode,
                   HStackNode, ZStackNode, PaddingNode, FixedFrameNode, FlexibleFrameNode,
                   BackgroundNode, OverlayNode, OpacityNode, ClipNode, ShadowNode, NamedNode>;

  explicit ViewNode(Content c);

  template <class Node>
  [[nodiscard]] const Node* as() const {
    return std::get_if<Node>(&content);
  }

  Content content;
  // Whether the height that is offered makes any difference to what it answers. Where it makes
  // none, one measurement serves all heights.
  bool respondsToHeight;

  friend bool operator==(const ViewNode& a, const ViewNode& b) { return a.content == b.content; }
};

template <class Node>
View makeView(Node node) {
  return View(std::make_shared<const ViewNode>(ViewNode::Content(std::move(node))));
}

}  // namespace orvane::detail
