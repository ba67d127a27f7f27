#include "view/view.h"

#include <algorithm>
#include <utility>

#include "view/layout.h"
#include "view/view_node.h"

namespace orvane {
namespace {

using detail::makeView;

// A copy of a view whose node is one of `Nodes`, with a change made to it; any other view as it is.
template <class... Nodes, class Change>
View changed(const View& view, Change change) {
  View result = view;
  const auto tryOne = [&](const auto* node) {
    if (!node) return;
    auto copy = *node;
    change(copy);
    result = makeView(std::move(copy));
  };
  (tryOne(view.node().as<Nodes>()), ...);
  return result;
}

std::vector<View> withoutEmpty(std::vector<View> children) {
  std::erase_if(children, [](const View& child) { return child.node().as<detail::EmptyNode>(); });
  return children;
}

}  // namespace

View::View() : View(makeView(detail::EmptyNode{})) {}

bool operator==(const View& a, const View& b) { return a.node_ == b.node_ || *a.node_ == *b.node_; }

View View::font(Font font) const {
  View result = changed<detail::TextNode>(*this, [&](auto& node) { node.style.font = font; });
  return changed<detail::SymbolNode>(result, [&](auto& node) { node.font = font; });
}

View View::foreground(Color color) const {
  return changed<detail::TextNode, detail::SymbolNode>(*this,
                                                       [&](auto& node) { node.color = color; });
}

View View::uppercase() const {
  return changed<detail::TextNode>(*this, [](auto& node) { node.style.uppercase = true; });
}

View View::lineLimit(int lines) const {
  return changed<detail::TextNode>(*this,
                                   [&](auto& node) { node.style.lineLimit = std::max(lines, 0); });
}

View View::minimumScaleFactor(double factor) const {
  return changed<detail::TextNode>(
      *this, [&](auto& node) { node.minimumScale = std::clamp(factor, 0.01, 1.0); });
}

View View::padding(double allSides) const {
  return padding(EdgeInsets{allSides, allSides, allSides, allSides});
}

View View::padding(EdgeInsets insets) const { return makeView(detail::PaddingNode{insets, *this}); }

View View::frame(std::optional<double> width, std::optional<double> height,
                 Alignment alignment) const {
  return makeView(detail::FixedFrameNode{width, height, alignment, *this});
}

View View::frame(FlexibleFrame frame) const {
  return makeView(detail::FlexibleFrameNode{frame, *this});
}

View View::background(View behind) const {
  return makeView(detail::BackgroundNode{*this, std::move(behind)});
}

View View::overlay(View inFront) const {
  return makeView(detail::OverlayNode{*this, std::move(inFront)});
}

View View::opacity(double opacity) const {
  // Written so that not a number is 0.
  return makeView(detail::OpacityNode{opacity > 0 ? std::min(opacity, 1.0) : 0.0, *this});
}

View View::clipped(Shape shape) const { return makeView(detail::ClipNode{shape, *this}); }

View View::shadow(Shape shape, Color color, double radius, Point offset) const {
  return makeView(detail::ShadowNode{shape, color, radius, offset, *this});
}

View View::named(std::string name) const {
  return makeView(detail::NamedNode{std::move(name), *this});
}

View text(std::string content) { return makeView(detail::TextNode{std::move(content), {}}); }

View symbol(std::string name) { return makeView(detail::SymbolNode{std::move(name), {}}); }

View spacer(double minLength) { return makeView(detail::SpacerNode{minLength}); }

View filled(Shape shape, Fill fill) { return makeView(detail::FillNode{shape, fill}); }

View stroked(Shape shape, Color color, double lineWidth) {
  return makeView(detail::StrokeNode{shape, color, lineWidth});
}

View vstack(VStack stack, std::vector<View> children) {
  return makeView(detail::VStackNode{stack.alignment, stack.spacing.value_or(defaultStackSpacing),
                                     withoutEmpty(std::move(children))});
}

View hstack(HStack stack, std::vector<View> children) {
  return makeView(detail::HStackNode{stack.alignment, stack.spacing.value_or(defaultStackSpacing),
                                     withoutEmpty(std::move(children))});
}

View zstack(Alignment alignment, std::vector<View> children) {
  return makeView(detail::ZStackNode{alignment, withoutEmpty(std::move(children))});
}

}  // namespace orvane
