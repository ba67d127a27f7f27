#include "linux/x11/parts_to_put.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane::host::x11 {
namespace {

std::vector<PixelRect> all(PartsToPut parts) {
  std::vector<PixelRect> found;
  while (!parts.isEmpty()) {
    found.push_back(parts.first());
    parts.replaceFirst({});
  }
  return found;
}

TEST(PartsToPut, ComeInTheirOrder) {
  PartsToPut parts;
  parts.add({10, 0, 5, 5});
  parts.add({0, 0, 5, 5});
  parts.add({});
  EXPECT_EQ(all(parts), (std::vector<PixelRect>{{10, 0, 5, 5}, {0, 0, 5, 5}}));
}

TEST(PartsToPut, OneWithinAnotherIsPutOnce) {
  PartsToPut parts;
  parts.add({0, 0, 5, 5});
  parts.add({1, 1, 2, 2});
  EXPECT_EQ(all(parts), (std::vector<PixelRect>{{0, 0, 5, 5}}));
  parts.add({20, 0, 5, 5});
  parts.add({0, 0, 10, 10});
  EXPECT_EQ(all(parts), (std::vector<PixelRect>{{20, 0, 5, 5}, {0, 0, 10, 10}}));
}

TEST(PartsToPut, OneThatIsDoneInPartKeepsItsTurn) {
  PartsToPut parts;
  parts.add({0, 0, 5, 5});
  parts.add({10, 0, 5, 5});
  parts.replaceFirst({0, 3, 5, 2});
  EXPECT_EQ(all(parts), (std::vector<PixelRect>{{0, 3, 5, 2}, {10, 0, 5, 5}}));
}

TEST(PartsToPut, TooManyBecomeOne) {
  PartsToPut parts;
  const int most = static_cast<int>(PartsToPut::most);
  for (int i = 0; i < most; ++i) parts.add({2 * i, 0, 1, 1});
  EXPECT_EQ(all(parts).size(), PartsToPut::most);
  parts.add({2 * most, 0, 1, 1});
  EXPECT_EQ(all(parts), (std::vector<PixelRect>{{0, 0, 2 * most + 1, 1}}));
}

}  // namespace
}  // namespace orvane::host::x11
