#include "linux/wayland/surface_area.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::host::wayland {

void PrintTo(const SurfaceArea& area, std::ostream* out) {
  *out << area.width << "x" << area.height << " at " << area.x << "," << area.y;
}

namespace {

constexpr Size hd{1920, 1080};

TEST(SurfaceScaleTest, RoundsHalfAPixelUp) {
  EXPECT_EQ(SurfaceScale{180}.pixels(1), 2);
  EXPECT_EQ(SurfaceScale{180}.pixels(2), 3);
  EXPECT_EQ(SurfaceScale{150}.pixels(2), 3);
  EXPECT_EQ(SurfaceScale{150}.pixels(1), 1);
  EXPECT_EQ(SurfaceScale{121}.pixels(60), 61);
  EXPECT_EQ(SurfaceScale::whole(2).pixels(7), 14);
  EXPECT_EQ(SurfaceScale::whole(0).pixels(7), 7);
}

TEST(SurfaceScaleTest, StepsMakeWholePixels) {
  EXPECT_EQ(SurfaceScale{120}.step(), 1);
  EXPECT_EQ(SurfaceScale{240}.step(), 1);
  EXPECT_EQ(SurfaceScale{180}.step(), 2);
  EXPECT_EQ(SurfaceScale{150}.step(), 4);
  EXPECT_EQ(SurfaceScale{210}.step(), 4);
  EXPECT_EQ(SurfaceScale{132}.step(), 10);
}

TEST(AreaCoveringTest, TakesInEveryPointThatIsTouched) {
  EXPECT_EQ(areaCovering({10.2, 20.9, 5, 5}, {120}, hd), (SurfaceArea{10, 20, 6, 6}));
}

TEST(AreaCoveringTest, BeginsAndEndsOnPixelsOfAFractionalScale) {
  EXPECT_EQ(areaCovering({11, 21, 4, 4}, {150}, hd), (SurfaceArea{8, 20, 8, 8}));
}

TEST(AreaCoveringTest, DoesNotGrowMuchForScalesThatHardlyEverMeetAPixel) {
  EXPECT_EQ(areaCovering({11, 21, 4, 4}, {121}, hd), (SurfaceArea{11, 21, 4, 4}));
}

TEST(AreaCoveringTest, StaysOnItsOutput) {
  EXPECT_EQ(areaCovering({-50, -50, 5000, 5000}, {120}, hd), (SurfaceArea{0, 0, 1920, 1080}));
  EXPECT_EQ(areaCovering({1919, 0, 10, 10}, {150}, {1921, 1080}), (SurfaceArea{1916, 0, 5, 12}));
  EXPECT_TRUE(areaCovering({3000, 0, 10, 10}, {120}, hd).isEmpty());
}

TEST(AreaCoveringTest, OfNothingIsNothing) {
  EXPECT_TRUE(areaCovering({}, {120}, hd).isEmpty());
  EXPECT_TRUE(areaCovering({0, 0, 10, 10}, {120}, {}).isEmpty());
  constexpr double endless = std::numeric_limits<double>::infinity();
  EXPECT_EQ(areaCovering({0, 0, endless, endless}, {120}, hd), (SurfaceArea{0, 0, 1920, 1080}));
}

TEST(WholeOutputTest, GoesToTheLastPointThatIsShownInPart) {
  EXPECT_EQ(wholeOutput({1706.7, 960}), (SurfaceArea{0, 0, 1707, 960}));
  EXPECT_TRUE(wholeOutput({}).isEmpty());
}

}  // namespace
}  // namespace orvane::host::wayland
