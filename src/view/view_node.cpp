#include "view/view_node.h"

#include <algorithm>

namespace orvane::detail {
namespace {

bool anyResponds(const std::vector<View>& children) {
  return std::any_of(children.begin(), children.end(),
                     [](const View& child) { return child.node().respondsToHeight; });
}

struct RespondsToHeight {
  bool operator()(const EmptyNode&) const { return false; }
  bool operator()(const TextNode&) const { return false; }
  bool operator()(const SymbolNode&) const { return false; }
  bool operator()(const SpacerNode&) const { return true; }
  bool operator()(const FillNode&) const { return true; }
  bool operator()(const StrokeNode&) const { return true; }
  bool operator()(const VStackNode& stack) const { return anyResponds(stack.children); }
  bool operator()(const HStackNode& stack) const {
    // A spacer stretches only along the stack that it stands in.
    return std::any_of(stack.children.begin(), stack.children.end(), [](const View& child) {
      return child.node().respondsToHeight && !child.node().as<SpacerNode>();
    });
  }
  bool operator()(const ZStackNode& stack) const { return anyResponds(stack.children); }
  bool operator()(const FixedFrameNode& frame) const {
    return !frame.height && frame.child.node().respondsToHeight;
  }
  bool operator()(const FlexibleFrameNode& node) const {
    return node.frame.minHeight || node.frame.maxHeight || node.child.node().respondsToHeight;
  }
  // Everything else takes after its one child.
  template <class Wrapper>
  bool operator()(const Wrapper& wrapper) const {
    return wrapper.child.node().respondsToHeight;
  }
};

}  // namespace

ViewNode::ViewNode(Content c)
    : content(std::move(c)), respondsToHeight(std::visit(RespondsToHeight{}, content)) {}

}  // namespace orvane::detail
