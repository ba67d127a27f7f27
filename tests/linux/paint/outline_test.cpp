#include "linux/paint/outline.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace orvane::host {
namespace {

constexpr int side = 80;

// Coverage of each pixel of a picture of `side` pixels.
std::vector<int> coverageOf(const Outline& outline) {
  const SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_A8, side, side));
  const CairoHandle cr(cairo_create(surface.get()));
  addPath(cr.get(), outline);
  cairo_fill(cr.get());
  cairo_surface_flush(surface.get());
  std::vector<int> values;
  for (int y = 0; y < side; ++y) {
    const unsigned char* row = cairo_image_surface_get_data(surface.get()) +
                               y * cairo_image_surface_get_stride(surface.get());
    values.insert(values.end(), row, row + side);
  }
  return values;
}

const Shape shapes[] = {Shape::rectangle(),
                        Shape::roundedRectangle(8),
                        Shape::roundedRectangle(8, true),
                        Shape::roundedRectangle(19.3, true),
                        Shape::roundedRectangle(500, true),
                        Shape::roundedRectangle(-3),
                        Shape::capsule(),
                        Shape::circle()};

TEST(Outline, TheInteriorIsWhollyInside) {
  for (const Shape& shape : shapes) {
    for (const double width : {3.0, 21.0, 60.4}) {
      const Outline outline = outlineOf(shape, {5.3, 6.7, width, 40}, 1);
      const auto coverage = coverageOf(outline);
      const PixelRect inside = interiorOf(outline);
      for (int y = inside.y; y < bottomOf(inside); ++y)
        for (int x = inside.x; x < rightOf(inside); ++x)
          ASSERT_EQ(coverage[y * side + x], 255) << x << " " << y << " width " << width;
    }
  }
}

TEST(Outline, NothingLiesBeyondTheCoveringPixels) {
  for (const Shape& shape : shapes) {
    const Outline outline = outlineOf(shape, {5.3, 6.7, 50.2, 40}, 1.25);
    const auto coverage = coverageOf(outline);
    const PixelRect around = coveringPixels(outline);
    for (int y = 0; y < side; ++y)
      for (int x = 0; x < side; ++x)
        if (!contains(around, {x, y, 1, 1})) {
          ASSERT_EQ(coverage[y * side + x], 0) << x << " " << y;
        }
  }
}

TEST(Outline, ContinuousCornersFollowTheCircleAtTheirMiddle) {
  const auto round = coverageOf(outlineOf(Shape::roundedRectangle(20), {0, 0, 80, 80}, 1));
  const auto continuous =
      coverageOf(outlineOf(Shape::roundedRectangle(20, true), {0, 0, 80, 80}, 1));
  for (int i = 0; i < 20; ++i) EXPECT_NEAR(round[i * side + i], continuous[i * side + i], 12) << i;
  // Farther along the edge the continuous one has already begun to bend.
  EXPECT_EQ(round[0 * side + 22], 255);
  EXPECT_LT(continuous[0 * side + 22], 255);
  EXPECT_EQ(continuous[0 * side + 30], 255);
}

TEST(Outline, EdgesAreSharpAtAnyScale) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    const auto coverage = coverageOf(outlineOf(Shape::rectangle(), {3.3, 3.3, 20.7, 20.7}, scale));
    for (const int value : coverage) ASSERT_TRUE(value == 0 || value == 255) << value;
  }
}

TEST(Outline, NeighboursShareTheirEdge) {
  const PixelRect left = snapped({1.1, 0, 10.3, 5}, 1.25);
  const PixelRect right = snapped({11.4, 0, 7.7, 5}, 1.25);
  EXPECT_EQ(rightOf(left), right.x);
}

TEST(Outline, CirclesOfOneSizeHaveOneDiameterWhereverTheyStand) {
  for (double x = 0; x < 3; x += 0.1) {
    const Outline circle = outlineOf(Shape::circle(), {x, x / 3, 15, 15}, 1.25);
    EXPECT_EQ(circle.width, 19) << x;
    EXPECT_EQ(circle.height, 19) << x;
  }
}

TEST(Outline, RectanglesThatMeetAreJoinedUntilNoneDo) {
  const auto joined =
      apart({{0, 0, 10, 10}, {20, 0, 10, 10}, {5, 5, 20, 2}, {50, 50, 0, 9}, {40, 0, 1, 1}});
  ASSERT_EQ(joined.size(), 2U);
  EXPECT_TRUE((joined[0] == PixelRect{0, 0, 30, 10}) || (joined[1] == PixelRect{0, 0, 30, 10}));
}

TEST(Outline, LengthsBeyondAnyScreenAreClamped) {
  EXPECT_EQ(toPixels(1e300, 2), 1 << 22);
  EXPECT_EQ(toPixels(-1e300, 2), -(1 << 22));
  EXPECT_EQ(toPixels(std::numeric_limits<double>::quiet_NaN(), 1), 0);
}

}  // namespace
}  // namespace orvane::host
