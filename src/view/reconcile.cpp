#include "view/reconcile.h"

#include <algorithm>
#include <type_traits>

#include "view/view_node.h"

namespace orvane::detail {
namespace {

void reconcileAll(const std::vector<View>& before, std::vector<View>& fresh) {
  const std::size_t both = std::min(before.size(), fresh.size());
  for (std::size_t index = 0; index < both; ++index) {
    fresh[index] = reconciled(before[index], fresh[index]);
  }
}

// The children of a node of the same kind, one by one. The overloads say where a kind keeps them.
template <class Node>
void reconcileChildren(const Node& before, Node& fresh) {
  if constexpr (requires { fresh.children; }) reconcileAll(before.children, fresh.children);
  if constexpr (requires { fresh.child; }) fresh.child = reconciled(before.child, fresh.child);
  if constexpr (requires { fresh.behind; }) fresh.behind = reconciled(before.behind, fresh.behind);
  if constexpr (requires { fresh.inFront; }) {
    fresh.inFront = reconciled(before.inFront, fresh.inFront);
  }
}

template <class Node>
constexpr bool isLeaf = !requires(const Node& node) {
  node.children;
}
&&!requires(const Node& node) { node.child; };

}  // namespace

View reconciled(const View& before, const View& fresh) {
  if (&before.node() == &fresh.node()) return fresh;
  const auto visitor = [&](const auto& node) -> View {
    using Node = std::decay_t<decltype(node)>;
    const auto* old = before.node().as<Node>();
    if (!old) return fresh;
    if constexpr (isLeaf<Node>) {
      return *old == node ? before : fresh;
    } else {
      Node copy = node;
      reconcileChildren(*old, copy);
      // Children that are shared now compare by address, so this looks at one level only.
      return copy == *old ? before : makeView(std::move(copy));
    }
  };
  return std::visit(visitor, fresh.node().content);
}

}  // namespace orvane::detail
