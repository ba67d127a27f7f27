#include "view/reconcile.h"

#include <type_traits>

#include "view/node_children.h"

namespace orvane {

View reconciled(const View& before, const View& fresh) {
  if (&before.node() == &fresh.node()) return fresh;
  const auto visitor = [&](const auto& node) -> View {
    using Node = std::decay_t<decltype(node)>;
    const auto* old = before.node().as<Node>();
    if (!old) return fresh;
    if constexpr (detail::isLeaf<Node>) {
      return *old == node ? before : fresh;
    } else {
      Node copy = node;
      bool isExchanged = false;
      detail::forEachChildPair(*old, copy, [&](const View& was, View& is) {
        View child = reconciled(was, is);
        isExchanged = isExchanged || &child.node() != &is.node();
        is = std::move(child);
      });
      // Children that are shared now compare by address, so this looks at one level only.
      if (copy == *old) return before;
      return isExchanged ? detail::makeView(std::move(copy)) : fresh;
    }
  };
  return std::visit(visitor, fresh.node().content);
}

}  // namespace orvane
