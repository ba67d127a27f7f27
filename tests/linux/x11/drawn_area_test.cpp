#include "linux/x11/drawn_area.h"

#include <gtest/gtest.h>

namespace orvane {
void PrintTo(const PixelRect& rect, std::ostream* out) {
  *out << rect.width << "x" << rect.height << "+" << rect.x << "+" << rect.y;
}
}  // namespace orvane

namespace orvane::host::x11 {
namespace {

constexpr PixelRect screen{0, 0, 1000, 600};

TEST(DrawnArea, BeginsWithWhatIsNeededOnStepsOfItsOwn) {
  DrawnArea area;
  EXPECT_TRUE(area.update({40, 40, 221, 100}, screen, {}));
  EXPECT_EQ(area.area(), (PixelRect{32, 32, 240, 112}));
}

TEST(DrawnArea, EndsWhereTheScreenEnds) {
  DrawnArea area;
  area.update({900, 500, 100, 100}, {0, 0, 1001, 601}, {});
  EXPECT_EQ(area.area(), (PixelRect{896, 496, 105, 105}));
}

TEST(DrawnArea, GrowsAtOnceToEverySide) {
  DrawnArea area;
  area.update({64, 64, 64, 64}, screen, {0});
  EXPECT_TRUE(area.update({32, 96, 64, 64}, screen, {1}));
  EXPECT_EQ(area.area(), (PixelRect{32, 64, 96, 96}));
}

TEST(DrawnArea, StaysWhileWhatIsNeededFits) {
  DrawnArea area;
  area.update({64, 64, 100, 64}, screen, {0});
  EXPECT_FALSE(area.update({64, 64, 70, 64}, screen, {1}));
  EXPECT_EQ(area.area(), (PixelRect{64, 64, 112, 64}));
}

TEST(DrawnArea, ShrinksWhenItWasTooLargeForAWhile) {
  DrawnArea area;
  area.update({64, 64, 320, 64}, screen, {0});
  for (int second = 1; second < 10; ++second) {
    EXPECT_FALSE(area.update({64, 64, 64, 64}, screen, {static_cast<double>(second)}));
  }
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {11}));
  EXPECT_EQ(area.area(), (PixelRect{64, 64, 64, 64}));
}

TEST(DrawnArea, ShrinksOnlyToAllThatWasNeededMeanwhile) {
  DrawnArea area;
  area.update({64, 64, 320, 64}, screen, {0});
  area.update({64, 64, 64, 64}, screen, {1});
  area.update({64, 64, 160, 64}, screen, {5});
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {12}));
  EXPECT_EQ(area.area(), (PixelRect{64, 64, 160, 64}));
}

TEST(DrawnArea, WaitBeginsAnewWhenAllOfItIsNeeded) {
  DrawnArea area;
  area.update({64, 64, 320, 64}, screen, {0});
  area.update({64, 64, 64, 64}, screen, {1});
  area.update({64, 64, 320, 64}, screen, {9});
  EXPECT_FALSE(area.update({64, 64, 64, 64}, screen, {12}));
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {20}));
}

TEST(DrawnArea, ClockThatIsSetBackDoesNotProlongTheWait) {
  DrawnArea area;
  area.update({64, 64, 320, 64}, screen, {1000});
  EXPECT_FALSE(area.update({64, 64, 64, 64}, screen, {100}));
  EXPECT_TRUE(area.update({64, 64, 64, 64}, screen, {111}));
}

TEST(DrawnArea, FollowsAScreenThatBecomesSmaller) {
  DrawnArea area;
  area.update({0, 0, 1000, 600}, screen, {0});
  EXPECT_TRUE(area.update({0, 0, 500, 300}, {0, 0, 500, 300}, {1}));
  EXPECT_EQ(area.area(), (PixelRect{0, 0, 500, 300}));
}

}  // namespace
}  // namespace orvane::host::x11
