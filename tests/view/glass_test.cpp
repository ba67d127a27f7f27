#include "view/glass.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const Material tint{Color::srgb(0, 0, 0, 0.9)};
const DisplayItem end{{}, 1, GroupEnd{}};

DisplayItem glass(Rect frame, double opacity = 1, Shape shape = Shape::rectangle()) {
  return {frame, opacity, FillItem{shape, tint}};
}
DisplayItem clip(Rect frame, std::optional<Shape> shape) {
  return {frame, 1, GroupBegin{1, shape}};
}

TEST(GlassPanes, AFillWithAMaterialIsOne) {
  const Rect frame{10, 20, 100, 50};
  EXPECT_THAT(glassPanes({glass(frame, 0.8, Shape::capsule())}),
              ElementsAre(GlassPane{frame, Shape::capsule()}));
}

TEST(GlassPanes, OtherFillsAreNone) {
  const DisplayItem plain{{0, 0, 10, 10}, 1, FillItem{Shape::rectangle(), Color::white()}};
  const LinearGradient gradient{{Color::white(), Color::black(), Color::red()}};
  const DisplayItem shaded{{0, 0, 10, 10}, 1, FillItem{Shape::rectangle(), gradient}};
  EXPECT_THAT(glassPanes({plain, shaded}), IsEmpty());
  EXPECT_THAT(glassPanes({}), IsEmpty());
}

TEST(GlassPanes, WhatIsNotSeenIsNone) {
  const DisplayItem clear{{0, 0, 10, 10}, 1, FillItem{Shape::rectangle(), Material{}}};
  EXPECT_THAT(glassPanes({glass({0, 0, 10, 10}, 0), glass({5, 5, 0, 10}), clear}), IsEmpty());
}

TEST(GlassPanes, AClipAroundItGivesItsShape) {
  const Rect frame{10, 20, 100, 50};
  const Shape card = Shape::roundedRectangle(8, true);
  EXPECT_THAT(glassPanes({clip(frame, card), glass(frame), end, glass({0, 0, 5, 5})}),
              ElementsAre(GlassPane{frame, card}, GlassPane{{0, 0, 5, 5}, Shape::rectangle()}));
}

TEST(GlassPanes, AClipThatIsLargerLeavesThePaneItsShape) {
  EXPECT_THAT(glassPanes({clip({0, 0, 300, 300}, Shape::circle()),
                          glass({10, 20, 100, 50}, 1, Shape::capsule()), end}),
              ElementsAre(GlassPane{{10, 20, 100, 50}, Shape::capsule()}));
}

TEST(GlassPanes, ClipsWithinClipsLetThroughWhatAllOfThemDo) {
  EXPECT_THAT(
      glassPanes({clip({0, 0, 50, 50}, Shape::rectangle()), clip({}, std::nullopt),
                  clip({40, 40, 50, 50}, Shape::circle()), glass({0, 0, 90, 90}), end, end, end}),
      ElementsAre(GlassPane{{40, 40, 10, 10}, Shape::circle()}));
  EXPECT_THAT(glassPanes({clip({0, 0, 10, 10}, Shape::rectangle()), glass({20, 20, 9, 9}), end}),
              IsEmpty());
}

TEST(GlassPanes, AnEndTooManyIsNoHarm) {
  EXPECT_THAT(glassPanes({end, end, glass({0, 0, 9, 9})}), SizeIs(1));
}

TEST(GlassPixels, ARectangleIsOne) {
  EXPECT_THAT(pixelsWithin({{1, 2, 30, 40}, Shape::rectangle()}, 2),
              ElementsAre(PixelRect{2, 4, 60, 80}));
}

TEST(GlassPixels, PartsOfPixelsAreLeftOut) {
  EXPECT_THAT(pixelsWithin({{0.4, 0.6, 9.2, 9.2}, Shape::rectangle()}, 1),
              ElementsAre(PixelRect{1, 1, 8, 8}));
}

TEST(GlassPixels, CornersAreRoundedRowByRow) {
  EXPECT_THAT(pixelsWithin({{0, 0, 20, 20}, Shape::roundedRectangle(4)}, 1),
              ElementsAre(PixelRect{4, 0, 12, 1}, PixelRect{2, 1, 16, 1}, PixelRect{1, 2, 18, 2},
                          PixelRect{0, 4, 20, 12}, PixelRect{1, 16, 18, 2}, PixelRect{2, 18, 16, 1},
                          PixelRect{4, 19, 12, 1}));
}

TEST(GlassPixels, LieWithinACircle) {
  const auto rows = pixelsWithin({{0, 0, 40, 20}, Shape::circle()}, 1);
  for (const auto& row : rows) {
    EXPECT_GE(row.x, 10);
    for (const double x : {row.x, row.x + row.width}) {
      for (const double y : {row.y, row.y + row.height}) {
        EXPECT_LE((x - 20) * (x - 20) + (y - 10) * (y - 10), 100.001);
      }
    }
  }
  EXPECT_GT(rows.size(), 5U);
}

TEST(GlassPixels, CornersLargerThanThePaneEndInItsMiddle) {
  EXPECT_EQ(pixelsWithin({{0, 0, 40, 10}, Shape::roundedRectangle(900)}, 1),
            pixelsWithin({{0, 0, 40, 10}, Shape::capsule()}, 1));
}

TEST(GlassPixels, AHugePaneIsCutAndATinyOneHasNone) {
  EXPECT_THAT(pixelsWithin({{-1e12, -1e12, 2e12, 2e12}, Shape::rectangle()}, 1),
              ElementsAre(PixelRect{-100000, -100000, 200000, 200000}));
  EXPECT_THAT(pixelsWithin({{0.2, 0.2, 0.5, 0.5}, Shape::rectangle()}, 1), IsEmpty());
}

}  // namespace
}  // namespace orvane
