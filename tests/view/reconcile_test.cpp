#include "view/reconcile.h"

#include <gtest/gtest.h>

#include "view/view_node.h"

namespace orvane::detail {
namespace {

const ViewNode* childOf(const View& stack, std::size_t index) {
  return &stack.node().as<VStackNode>()->children.at(index).node();
}

View pair(const std::string& first, const std::string& second) {
  return vstack({}, {text(first).padding(1), text(second).padding(2)});
}

TEST(Reconcile, AnEqualViewIsTheOneBefore) {
  const View before = pair("a", "b");
  EXPECT_EQ(&reconciled(before, pair("a", "b")).node(), &before.node());
}

TEST(Reconcile, UnchangedPartsAreShared) {
  const View before = pair("a", "b");
  const View fresh = reconciled(before, pair("a", "c"));
  EXPECT_EQ(fresh, pair("a", "c"));
  EXPECT_EQ(childOf(fresh, 0), childOf(before, 0));
  EXPECT_NE(childOf(fresh, 1), childOf(before, 1));
}

TEST(Reconcile, AViewOfAnotherKindIsTakenAsItIs) {
  const View fresh = pair("a", "b");
  EXPECT_EQ(&reconciled(text("a"), fresh).node(), &fresh.node());
  EXPECT_EQ(reconciled(fresh, View()), View());
}

TEST(Reconcile, WhereNothingIsSharedTheFreshViewItselfIsTaken) {
  const View fresh = pair("c", "d");
  EXPECT_EQ(&reconciled(pair("a", "b"), fresh).node(), &fresh.node());
  const View again = reconciled(fresh, fresh);
  EXPECT_EQ(&again.node(), &fresh.node());
}

TEST(Reconcile, ListsOfOtherLengthsKeepWhatTheyShare) {
  const View before = pair("a", "b");
  const View longer = vstack({}, {text("a").padding(1), text("b").padding(2), text("c")});
  const View fresh = reconciled(before, longer);
  EXPECT_EQ(fresh, longer);
  EXPECT_EQ(childOf(fresh, 1), childOf(before, 1));
}

}  // namespace
}  // namespace orvane::detail
