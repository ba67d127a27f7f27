#include "view/pixel_grid.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

TEST(PixelGrid, CoversEveryPixelThatIsTouched) {
  EXPECT_EQ(pixelsCovering({10, 20, 30, 40}, 1), (PixelRect{10, 20, 30, 40}));
  EXPECT_EQ(pixelsCovering({10.2, 20.9, 30, 40}, 1), (PixelRect{10, 20, 31, 41}));
  EXPECT_EQ(pixelsCovering({-0.5, -1.5, 1, 1}, 1), (PixelRect{-1, -2, 2, 2}));
  EXPECT_EQ(pixelsCovering({10, 10, 10, 10}, 1.25), (PixelRect{12, 12, 13, 13}));
  EXPECT_EQ(pixelsCovering({10, 10, 10, 10}, 2), (PixelRect{20, 20, 20, 20}));
}

TEST(PixelGrid, ARoundingErrorCostsNoPixel) {
  EXPECT_EQ(pixelsCovering({0.1 + 0.2, 0, 0.7, 1}, 10), (PixelRect{3, 0, 7, 10}));
}

TEST(PixelGrid, TheAreaOfSeveralRectangles) {
  EXPECT_EQ(areaOf({}), 0);
  EXPECT_EQ(areaOf({{0, 0, 3, 4}, {9, 9, -2, 5}, {-7, 2, 100'000, 100'000}}), 10'000'000'012);
}

TEST(PixelGrid, EmptyStaysEmpty) {
  EXPECT_TRUE(pixelsCovering({5, 5, 0, 10}, 1).isEmpty());
  EXPECT_TRUE(pixelsCovering({5, 5, -3, 10}, 1).isEmpty());
}

TEST(PixelGrid, WhatIsTooLargeIsClamped) {
  constexpr int highest = std::numeric_limits<int>::max();
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(pixelsCovering({0, 0, infinity, 1e300}, 1), (PixelRect{0, 0, highest, highest}));
  EXPECT_EQ(pixelsCovering({-1e300, 0, 2e300, 1}, 1).width, highest);
  EXPECT_EQ(pixelsCovering({std::numeric_limits<double>::quiet_NaN(), 0, 1, 1}, 1).x, 0);
}

TEST(PixelGrid, NeighboursShareTheirEdge) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    for (double edge = 0; edge < 20; edge += 0.13) {
      const Rect left = snappedToPixels({0, 0, edge, 10}, scale);
      const Rect right = snappedToPixels({edge, 0, 10, 10}, scale);
      EXPECT_DOUBLE_EQ(left.right(), right.x);
    }
  }
}

TEST(PixelGrid, WhatTwoRectanglesShare) {
  const PixelRect plane{0, 0, 10, 8};
  EXPECT_EQ(intersectionOf({-5, -5, 20, 20}, plane), plane);
  EXPECT_EQ(intersectionOf({5, 5, 2, 2}, plane), (PixelRect{5, 5, 2, 2}));
  EXPECT_TRUE(intersectionOf({10, 0, 5, 5}, plane).isEmpty());
  EXPECT_TRUE(intersectionOf({-5, 0, 5, 5}, plane).isEmpty());
  constexpr int most = std::numeric_limits<int>::max();
  EXPECT_EQ(intersectionOf({1, 1, most, most}, plane), (PixelRect{1, 1, 9, 7}));
  EXPECT_EQ(intersectionOf({-most, -most, most, most}, plane), PixelRect());
}

}  // namespace
}  // namespace orvane
