#pragma once

#include <algorithm>
#include <cstddef>

#include "view/view_node.h"

// Which children the kinds of nodes have, for those that walk two trees side by side.
namespace orvane::detail {

// A node that holds no other views.
template <class Node>
constexpr bool isLeaf = !requires(const Node& node) {
  node.children;
}
&&!requires(const Node& node) { node.child; };

// Calls `visit` with the children of two nodes of a kind that stand at the same places in both.
template <class Before, class Fresh, class Visit>
void forEachChildPair(Before& before, Fresh& fresh, Visit visit) {
  if constexpr (requires { fresh.children; }) {
    const std::size_t both = std::min(before.children.size(), fresh.children.size());
    for (std::size_t index = 0; index < both; ++index) {
      visit(before.children[index], fresh.children[index]);
    }
  }
  if constexpr (requires { fresh.child; }) visit(before.child, fresh.child);
  if constexpr (requires { fresh.behind; }) visit(before.behind, fresh.behind);
  if constexpr (requires { fresh.inFront; }) visit(before.inFront, fresh.inFront);
}

}  // namespace orvane::detail
