#include "linux/paint/bounded_cache.h"

#include <gtest/gtest.h>

#include <functional>

namespace orvane::host {
namespace {

using Cache = BoundedCache<int, int, std::hash<int>>;

TEST(BoundedCache, RemembersWhatWasInserted) {
  Cache cache(100);
  EXPECT_EQ(cache.find(1), nullptr);
  EXPECT_EQ(cache.insert(1, 10), 10);
  ASSERT_NE(cache.find(1), nullptr);
  EXPECT_EQ(*cache.find(1), 10);
}

TEST(BoundedCache, NeverHoldsMoreThanItsBudget) {
  Cache cache(100);
  for (int i = 0; i < 10'000; ++i) {
    cache.insert(i, i, 5);
    ASSERT_LE(cache.size(), 20U);
  }
}

TEST(BoundedCache, KeepsWhatIsAskedFor) {
  Cache cache(20);
  cache.insert(-1, 7);
  for (int i = 0; i < 1000; ++i) {
    cache.insert(i, i);
    ASSERT_NE(cache.find(-1), nullptr) << i;
  }
  EXPECT_EQ(*cache.find(-1), 7);
}

TEST(BoundedCache, ForgetsWhatIsNot) {
  Cache cache(20);
  cache.insert(-1, 7);
  for (int i = 0; i < 30; ++i) cache.insert(i, i);
  EXPECT_EQ(cache.find(-1), nullptr);
}

TEST(BoundedCache, HoldsOneEntryThatIsLargerThanTheBudget) {
  Cache cache(10);
  cache.insert(1, 1);
  EXPECT_EQ(cache.insert(2, 22, 1000), 22);
  ASSERT_NE(cache.find(2), nullptr);
  cache.insert(3, 3);
  cache.insert(4, 4, 1000);
  EXPECT_EQ(cache.find(2), nullptr);
}

}  // namespace
}  // namespace orvane::host
